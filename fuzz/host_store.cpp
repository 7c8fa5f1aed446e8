// The host's configuration store with any name, value and assignment, beside a map.
#include <config_store.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>

#include "feed.hpp"
#include "host/config_store.hpp"
#include "host/host.hpp"
#include "host_log.hpp"
#include "oracle.hpp"
#include "platform/temp_folder.hpp"

using namespace QuilloHost;

namespace {

struct Setting {
    std::string fallback;
    std::optional<std::string> stored = std::nullopt;
    std::optional<std::string> running = std::nullopt;  // in the present run
};

// The names that are declared; settings cannot be taken back.
std::string const names[] = {"x", "a setting", std::string(64, 'n')};

bool HasControl(std::string const& text) {
    for (char const c : text) {
        unsigned const byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            return true;
        }
    }
    return false;
}

bool IsName(std::string const& name) {
    return name.size() - 1 < 64 && name.front() != ' ' && name.back() != ' ' &&
           name.find('=') == std::string::npos && !HasControl(name);
}

bool IsValue(std::string const& value) {
    return value.size() <= 256 && !HasControl(value);
}

// A boolean, or a whole number that an int holds.
std::optional<int> NumberOf(std::string const& text) {
    if (text == "TRUE" || text == "FALSE") {
        return text == "TRUE" ? 1 : 0;
    }
    std::string const digits = text.substr(text.compare(0, 1, "-") == 0 ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    long long const number = std::strtoll(text.c_str(), nullptr, 10);
    bool const fits = errno == 0 && number >= -2147483648LL && number <= 2147483647LL;
    return fits ? std::optional<int>(static_cast<int>(number)) : std::nullopt;
}

class Store {
public:
    Store() {
        for (char const* ending : {"", "-wal", "-shm", "-journal"}) {
            std::error_code absent;
            std::filesystem::remove(Folder() + "/configuration.db" + ending, absent);
        }
        SetStateFolder(Folder());
        NextRun();
        for (std::string const& name : names) {
            settings[name] = {"FALSE"};
            Expect(DeclareSetting(name, "FALSE"), "DeclareSetting: a good name");
        }
        TakeHostLog();
    }

    void Step(Feed& feed) {
        unsigned const step = feed.Below(8);
        std::string const name = feed.Bit() ? feed.Text().c_str() : names[feed.Below(3)];
        if (step < 2) {
            Get(name);
        } else if (step == 2) {
            Set(name, feed.Text().c_str());
        } else if (step == 3) {
            Update(name + "=" + feed.Text().c_str());
        } else if (step == 4) {
            Update(name);
        } else if (step == 5) {
            NextRun();
        } else {
            Declare(name, feed.Text());
        }
    }

    void GetAll() {
        for (std::string const& name : names) {
            Get(name);
        }
    }

private:
    static std::string const& Folder() {
        static TempFolder const folder;
        return folder.path;
    }

    // A failure is told of once, and nothing else is.
    static void ExpectStatus(long status, int expected, std::string const& rule) {
        ExpectEqual(status, static_cast<long>(expected), rule);
        ExpectEqual(TakeHostLog().size(), std::size_t{expected != 0 ? 1U : 0U},
                    "store: a failure is logged once");
    }

    int StatusOf(std::string const& name) const {
        if (!IsName(name)) {
            return ConfigStatus_BadArgument;
        }
        return settings.count(name) == 1 ? ConfigStatus_Done : ConfigStatus_UnknownName;
    }

    void Get(std::string const& name) {
        int status = StatusOf(name);
        std::optional<int> expected;
        if (status == 0) {
            Setting const& setting = settings.at(name);
            expected =
                NumberOf(setting.running.value_or(setting.stored.value_or(setting.fallback)));
            status = expected ? ConfigStatus_Done : ConfigStatus_NotBoolean;
        }
        int value = -4711;
        ExpectStatus(Cfg_GetBoolAttrValue(name.c_str(), &value), status,
                     "Cfg_GetBoolAttrValue: the status");
        ExpectEqual(value, expected.value_or(-4711),
                    "Cfg_GetBoolAttrValue: the value, or untouched");
    }

    void Set(std::string const& name, std::string const& value) {
        int status = StatusOf(name);
        status = status == 0 && !IsValue(value) ? ConfigStatus_BadArgument : status;
        ExpectStatus(Cfg_SetAttrValue(name.c_str(), value.c_str()), status,
                     "Cfg_SetAttrValue: the status");
        if (status == 0) {
            settings[name].running = value;
        }
    }

    void Update(std::string const& assignment) {
        std::size_t const equals = assignment.find('=');
        std::string const name = assignment.substr(0, equals);
        bool const isOne = equals != std::string::npos && equals == assignment.rfind('=');
        std::string const value = isOne ? assignment.substr(equals + 1) : "";
        int status = isOne ? StatusOf(name) : static_cast<int>(ConfigStatus_BadArgument);
        status = status == 0 && !IsValue(value) ? ConfigStatus_BadArgument : status;
        ExpectStatus(ConfigUpdate(assignment.c_str()), status, "ConfigUpdate: the status");
        if (status == 0) {
            settings[name].running = settings[name].stored = value;
        }
    }

    void NextRun() {
        static unsigned run = 0;
        SetServiceRun(std::to_string(++run));
        for (auto& setting : settings) {
            setting.second.running.reset();
        }
    }

    // Only settings that are there already: each stays for the time of the process.
    void Declare(std::string const& name, std::string const& value) {
        bool const isGood = IsName(name) && IsValue(value);
        if (isGood && settings.count(name) == 0) {
            return;
        }
        ExpectEqual(DeclareSetting(name, value), isGood, "DeclareSetting: whether it is one");
        ExpectEqual(TakeHostLog().size(), std::size_t{isGood ? 0U : 1U},
                    "DeclareSetting: what is wrong is logged once");
        if (isGood) {
            settings[name].fallback = value;
        }
    }

    std::map<std::string, Setting> settings;
};

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    Store store;
    for (unsigned left = 1 + feed.Below(8); left > 0; --left) {
        store.Step(feed);
    }
    store.GetAll();
}
