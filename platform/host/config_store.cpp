// The configuration store: the settings that were declared, the rules of their names and values,
// and the log entries of what breaks them. The values themselves are in setting_table.
#include "host/config_store.hpp"

#include <charconv>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/setting_table.hpp"

namespace QuilloHost {

namespace {

constexpr std::size_t longestName = 64;
constexpr std::size_t longestValue = 256;

// Each setting's default value.
std::map<std::string, std::string, std::less<>>& Declared() {
    static std::map<std::string, std::string, std::less<>> declared;
    return declared;
}

bool HasControlByte(std::string_view text) {
    for (char const c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            return true;
        }
    }
    return false;
}

bool IsName(std::string_view name) {
    return !name.empty() && name.size() <= longestName && name.front() != ' ' &&
           name.back() != ' ' && name.find('=') == std::string_view::npos && !HasControlByte(name);
}

bool IsValue(std::string_view value) {
    return value.size() <= longestValue && !HasControlByte(value);
}

int Fail(ConfigStatus status, char const* call, std::string_view name, char const* what) {
    Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: setting \"%.*s\": %s", call,
                  static_cast<int>(name.size()), name.data(), what);
    return status;
}

// Whether `name` may be read or set, else the failure behind its log entry.
int CheckName(char const* call, std::string_view name) {
    if (!IsName(name)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a name has 1 to 64 bytes, no '=', no control byte and no blank at its ends");
    }
    if (Declared().find(name) == Declared().end()) {
        return Fail(
            ConfigStatus_UnknownName, call, name,
            "there is no such setting: declare it with QuilloHost::DeclareSetting before its "
            "first use");
    }
    return ConfigStatus_Done;
}

int CheckAssignment(char const* call, std::string_view name, std::string_view value) {
    int const status = CheckName(call, name);
    if (status == ConfigStatus_Done && !IsValue(value)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a value has at most 256 bytes and no control byte");
    }
    return status;
}

// Runs `work`, which may throw, and gives its status.
template <class Work>
int Guarded(char const* call, std::string_view name, Work work) noexcept {
    try {
        return work();
    } catch (std::exception const& error) {
        return Fail(ConfigStatus_StoreFailed, call, name, error.what());
    }
}

// TRUE, FALSE, or a whole number that an int holds.
std::optional<int> ParseBoolean(std::string const& text) {
    if (text == "TRUE" || text == "FALSE") {
        return text == "TRUE" ? 1 : 0;
    }
    int number = 0;
    char const* const end = text.data() + text.size();
    auto const parsed = std::from_chars(text.data(), end, number);
    bool const isNumber = parsed.ec == std::errc() && parsed.ptr == end;
    return isNumber ? std::optional<int>(number) : std::nullopt;
}

int ReadBoolean(char const* call, std::string_view name, int& value) {
    std::optional<int> const number =
        ParseBoolean(FindValue(name).value_or(Declared().find(name)->second));
    if (!number) {
        return Fail(ConfigStatus_NotBoolean, call, name,
                    "its value is neither TRUE nor FALSE nor a whole number");
    }
    value = *number;
    return ConfigStatus_Done;
}

using Writer = void(std::string_view name, std::string_view value);

int Assign(char const* call, std::string_view name, std::string_view value,
           Writer* write) noexcept {
    return Guarded(call, name, [&] {
        int const status = CheckAssignment(call, name, value);
        if (status == ConfigStatus_Done) {
            write(name, value);
        }
        return status;
    });
}

}  // namespace

bool DeclareSetting(std::string const& name, std::string const& defaultValue) {
    if (!IsName(name) || !IsValue(defaultValue)) {
        Fail(ConfigStatus_BadArgument, "DeclareSetting", name,
             "the name or the default value breaks the rules");
        return false;
    }
    Declared().insert_or_assign(name, defaultValue);
    return true;
}

}  // namespace QuilloHost

using namespace QuilloHost;

int Cfg_GetBoolAttrValue(char const* name, int* value) {
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, "", "there is no name, or no place for it");
    }
    char const* const call = __func__;
    return Guarded(call, name, [&] {
        int const status = CheckName(call, name);
        return status == ConfigStatus_Done ? ReadBoolean(call, name, *value) : status;
    });
}

int Cfg_SetAttrValue(char const* name, char const* value) {
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, "", "there is no name, or no value");
    }
    return Assign(__func__, name, value, WriteRunning);
}

long ConfigUpdate(char const* assignment) {
    char const* const equals = assignment != nullptr ? std::strchr(assignment, '=') : nullptr;
    if (equals == nullptr || std::strchr(equals + 1, '=') != nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, assignment != nullptr ? assignment : "",
                    "an assignment has the form NAME=VALUE, with one '='");
    }
    std::string_view const name(assignment, static_cast<std::size_t>(equals - assignment));
    return Assign(__func__, name, equals + 1, WriteStoredAndRunning);
}
