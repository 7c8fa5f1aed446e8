// The configuration store: one table in a SQLite database, in WAL mode, a row a setting that was
// ever set.
//
//     setting(name TEXT PRIMARY KEY, stored TEXT, running TEXT, run TEXT)
//
// `running` holds as long as `run` is the run of the service, which is a boot of the machine unless
// the set-up says otherwise; then `stored` holds, and without one the default that the setting was
// declared with. Both are changed in one transaction, and every commit is synced: a power cut
// leaves the old values or the new ones.
#include "host/config_store.hpp"

#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "host/contract.hpp"
#include "host/database.hpp"
#include "host/host.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

constexpr std::size_t longestName = 64;
constexpr std::size_t longestValue = 256;

struct Store {
    std::optional<std::string> folder;
    std::optional<std::string> run;
    int patience = 2000;
    std::map<std::string, std::string> defaults;
};

Store& TheStore() {
    static Store store;
    return store;
}

std::string FromEnvironment(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string DefaultFolder() {
    std::string const named = FromEnvironment("QUILLO_STATE_DIR");
    if (!named.empty()) {
        return named;
    }
    if (geteuid() == 0) {
        return "/var/lib/quillo";
    }
    std::string const state = FromEnvironment("XDG_STATE_HOME");
    return state.empty() ? FromEnvironment("HOME") + "/.local/state/quillo" : state + "/quillo";
}

std::string Run() {
    std::optional<std::string> const& run = TheStore().run;
    return run ? *run : ReadFirstLine("/proc/sys/kernel/random/boot_id").value_or("");
}

// The database, opened for one call. No connection outlives a call: SQLite's locks belong to the
// process that took them, so one that a fork carried into another process would lose updates.
Database OpenDatabase() {
    namespace fs = std::filesystem;
    fs::path const folder = TheStore().folder.value_or(DefaultFolder());
    if (fs::create_directories(folder)) {
        fs::permissions(folder, fs::perms::owner_all);
    }
    Database database((folder / "configuration.db").string(), TheStore().patience);
    database.Run(
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = FULL;"
        "CREATE TABLE IF NOT EXISTS setting"
        "(name TEXT PRIMARY KEY, stored TEXT, running TEXT, run TEXT) WITHOUT ROWID");
    return database;
}

bool HasControlByte(std::string const& text) {
    for (char const c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            return true;
        }
    }
    return false;
}

bool IsName(std::string const& name) {
    return !name.empty() && name.size() <= longestName && name.front() != ' ' &&
           name.back() != ' ' && name.find('=') == std::string::npos && !HasControlByte(name);
}

bool IsValue(std::string const& value) {
    return value.size() <= longestValue && !HasControlByte(value);
}

int Fail(ConfigStatus status, char const* call, std::string const& name, char const* what) {
    Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: setting \"%s\": %s", call, name.c_str(),
                  what);
    return status;
}

// Whether `name` may be read or set, else the failure behind its log entry.
int CheckName(char const* call, std::string const& name) {
    if (!IsName(name)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a name has 1 to 64 bytes, no '=', no control byte and no blank at its ends");
    }
    if (TheStore().defaults.count(name) == 0) {
        return Fail(ConfigStatus_UnknownName, call, name,
                    "there is no such setting; a setting is declared before it is used");
    }
    return ConfigStatus_Done;
}

int CheckAssignment(char const* call, std::string const& name, std::string const& value) {
    int const status = CheckName(call, name);
    if (status == ConfigStatus_Done && !IsValue(value)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a value has at most 256 bytes and no control byte");
    }
    return status;
}

// Runs `work`, which may throw, and gives its status.
template <class Work>
int Guarded(char const* call, std::string const& name, Work work) noexcept {
    try {
        return work();
    } catch (std::exception const& error) {
        return Fail(ConfigStatus_StoreFailed, call, name, error.what());
    }
}

std::string ValueOf(std::string const& name) {
    Database database = OpenDatabase();
    Statement query(
        database, "SELECT CASE WHEN run = ? THEN running END, stored FROM setting WHERE name = ?");
    query.Bind(Run()).Bind(name);
    if (query.Step()) {
        for (int const column : {0, 1}) {
            if (!query.IsNull(column)) {
                return query.Text(column);
            }
        }
    }
    return TheStore().defaults[name];
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

int ReadBoolean(std::string const& name, int& value) {
    std::optional<int> const number = ParseBoolean(ValueOf(name));
    if (!number) {
        return Fail(ConfigStatus_NotBoolean, "Cfg_GetBoolAttrValue", name,
                    "its value is neither TRUE nor FALSE nor a whole number");
    }
    value = *number;
    return ConfigStatus_Done;
}

// Runs a statement that writes name, ?1, value, ?2, and run, ?3: by itself it is a transaction.
int Write(char const* sql, std::string const& name, std::string const& value) {
    Database database = OpenDatabase();
    Statement(database, sql).Bind(name).Bind(value).Bind(Run()).Step();
    return ConfigStatus_Done;
}

constexpr char writeRunning[] =
    "INSERT INTO setting (name, running, run) VALUES (?1, ?2, ?3) "
    "ON CONFLICT (name) DO UPDATE SET running = ?2, run = ?3";

constexpr char writeBoth[] =
    "INSERT INTO setting (name, stored, running, run) VALUES (?1, ?2, ?2, ?3) "
    "ON CONFLICT (name) DO UPDATE SET stored = ?2, running = ?2, run = ?3";

}  // namespace

void SetStateFolder(std::string const& folder) {
    TheStore().folder = folder;
}

void SetServiceRun(std::string const& run) {
    TheStore().run = run;
}

void SetStorePatience(int milliseconds) {
    TheStore().patience = milliseconds;
}

bool DeclareSetting(std::string const& name, std::string const& defaultValue) {
    if (!IsName(name) || !IsValue(defaultValue)) {
        Fail(ConfigStatus_BadArgument, "DeclareSetting", name,
             "the name or the default value breaks the rules");
        return false;
    }
    TheStore().defaults[name] = defaultValue;
    return true;
}

}  // namespace QuilloHost

using namespace QuilloHost;

int Cfg_GetBoolAttrValue(char const* name, int* value) {
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, "", "there is no name, or no place for it");
    }
    return Guarded(__func__, name, [&] {
        int const status = CheckName("Cfg_GetBoolAttrValue", name);
        return status == ConfigStatus_Done ? ReadBoolean(name, *value) : status;
    });
}

int Cfg_SetAttrValue(char const* name, char const* value) {
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, "", "there is no name, or no value");
    }
    return Guarded(__func__, name, [&] {
        int const status = CheckAssignment("Cfg_SetAttrValue", name, value);
        return status == ConfigStatus_Done ? Write(writeRunning, name, value) : status;
    });
}

long ConfigUpdate(char const* assignment) {
    char const* const equals = assignment != nullptr ? std::strchr(assignment, '=') : nullptr;
    if (equals == nullptr) {
        return Fail(ConfigStatus_BadArgument, __func__, assignment != nullptr ? assignment : "",
                    "an assignment has the form NAME=VALUE");
    }
    return Guarded(__func__, assignment, [&] {
        std::string const name(assignment, equals);
        int const status = CheckAssignment("ConfigUpdate", name, equals + 1);
        return status == ConfigStatus_Done ? Write(writeBoth, name, equals + 1) : status;
    });
}
