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

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "host/contract.hpp"
#include "host/database.hpp"
#include "host/host.hpp"
#include "host/settings.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

namespace fs = std::filesystem;

// The database of one process: a process made without the handlers of a fork, which has its
// parent's, leaves that one alone.
struct Connection {
    std::unique_ptr<Database> database;
    pid_t owner = 0;

    ~Connection() { Close(); }

    void Close() {
        if (owner != getpid()) {
            static_cast<void>(database.release());
        }
        database.reset();
    }
};

struct Store {
    std::optional<std::string> folder;
    std::string run;  // empty: the boot
    int patience = 2000;
    std::map<std::string, std::string, std::less<>> defaults;
    Connection connection;
};

Store& TheStore() {
    static Store store;
    return store;
}

// Held while the store is used, and during a fork.
std::mutex storeMutex;

// SQLite notes the locks that it holds in memory. A child would inherit the notes without the
// locks: its parent, closing the database, would believe itself alone and take away the log that
// the child writes to, and the child's commits would be lost. So there is no connection during a
// fork, and each process opens its own.
void PrepareFork() {
    storeMutex.lock();
    TheStore().connection.Close();
}

void EndFork() {
    storeMutex.unlock();
}

void HandleForks() {
    static bool isDone = false;
    if (!isDone) {
        int const error = pthread_atfork(PrepareFork, EndFork, EndFork);
        if (error != 0) {
            throw std::system_error(error, std::generic_category(), "pthread_atfork");
        }
        isDone = true;
    }
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
    if (fs::path(state).is_absolute()) {  // a relative one is to be ignored
        return state + "/quillo";
    }
    std::string const home = FromEnvironment("HOME");
    if (home.empty()) {
        throw DatabaseError("no folder for the database is known; QUILLO_STATE_DIR names one");
    }
    return home + "/.local/state/quillo";
}

// The folder, which stays the same when the process changes its own folder, or its user.
fs::path StateFolder() {
    std::optional<std::string>& folder = TheStore().folder;
    if (!folder) {
        folder = fs::absolute(DefaultFolder()).string();
    }
    return (fs::path(*folder) / "").parent_path();  // without a '/' at its end
}

// A folder's entries survive a power cut once the folder is synced. Where that cannot be done
// nothing is wrong with the store itself.
void Sync(fs::path const& folder) {
    int const fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        fsync(fd);
        close(fd);
    }
}

// Makes `folder`, open to its owner alone, if it is not there.
std::error_code MakeFolder(fs::path const& folder) {
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    if (!error && mkdir(folder.c_str(), S_IRWXU) == 0) {
        Sync(folder.parent_path());
    } else if (!error && errno != EEXIST) {
        error.assign(errno, std::generic_category());
    }
    return error;
}

// The database's path. The file must not be a symbolic link, but a folder above it may be one.
std::string DatabaseFile() {
    fs::path const folder = StateFolder();
    std::error_code error = MakeFolder(folder);
    fs::path const real = error ? folder : fs::canonical(folder, error);
    if (error) {
        throw DatabaseError(folder.string() + ": " + error.message() +
                            "; SetStateFolder or QUILLO_STATE_DIR can name another folder");
    }
    return (real / "configuration.db").string();
}

std::unique_ptr<Database> OpenDatabase() {
    auto database = std::make_unique<Database>(DatabaseFile(), TheStore().patience);
    database->Run(
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = FULL;"
        "CREATE TABLE IF NOT EXISTS setting"
        "(name TEXT PRIMARY KEY, stored TEXT, running TEXT, run TEXT) WITHOUT ROWID");
    return database;
}

// The database, opened when it is first needed.
Database& TheDatabase() {
    Connection& connection = TheStore().connection;
    if (connection.owner != getpid()) {
        connection.Close();
        connection.owner = getpid();
    }
    if (!connection.database) {
        HandleForks();
        connection.database = OpenDatabase();
    }
    return *connection.database;
}

std::string Run() {
    if (!TheStore().run.empty()) {
        return TheStore().run;
    }
    std::string const file = MachineRoots().proc + "/sys/kernel/random/boot_id";
    std::string const boot = ReadFirstLine(file).value_or("");
    if (boot.empty()) {
        throw DatabaseError(file + " cannot be read; SetServiceRun can name the run instead");
    }
    return boot;
}

int Fail(ConfigStatus status, char const* call, std::string_view name, char const* what) {
    std::size_t const shown = std::min(name.size(), 2 * longestSettingName);
    Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: setting \"%.*s\": %s", call,
                  static_cast<int>(shown), name.data(), what);
    return status;
}

// Whether `name` may be read or set, else the failure behind its log entry.
int CheckName(char const* call, std::string_view name) {
    if (!IsSettingName(name)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a name has 1 to 64 bytes, no '=', no control byte and no blank at its ends");
    }
    if (TheStore().defaults.count(name) == 0) {
        return Fail(ConfigStatus_UnknownName, call, name,
                    "there is no such setting; a setting is declared before it is used");
    }
    return ConfigStatus_Done;
}

int CheckAssignment(char const* call, std::string_view name, std::string_view value) {
    int const status = CheckName(call, name);
    if (status == ConfigStatus_Done && !IsSettingValue(value)) {
        return Fail(ConfigStatus_BadArgument, call, name,
                    "a value has at most 256 bytes and no control byte");
    }
    return status;
}

// Runs `work`, which may throw, and gives its status.
template <class Work>
int Guarded(char const* call, std::string_view name, Work work) noexcept {
    try {
        std::lock_guard<std::mutex> const lock(storeMutex);
        return work();
    } catch (std::exception const& error) {
        return Fail(ConfigStatus_StoreFailed, call, name, error.what());
    }
}

std::string ValueOf(std::string_view name) {
    Statement query(
        TheDatabase(),
        "SELECT CASE WHEN run = ? THEN running END, stored FROM setting WHERE name = ?");
    query.Bind(Run()).Bind(name);
    if (query.Step()) {
        for (int const column : {0, 1}) {
            if (!query.IsNull(column)) {
                return query.Text(column);
            }
        }
    }
    return TheStore().defaults.find(name)->second;
}

int ReadBoolean(char const* call, std::string_view name, int& value) {
    std::optional<int> const number = ParseBoolean(ValueOf(name));
    if (!number) {
        return Fail(ConfigStatus_NotBoolean, call, name,
                    "its value is neither TRUE nor FALSE nor a whole number; set it to one");
    }
    value = *number;
    return ConfigStatus_Done;
}

int WriteRunning(std::string_view name, std::string_view value) {
    Transaction transaction(TheDatabase());
    Statement(TheDatabase(),
              "INSERT INTO setting (name, running, run) VALUES (?, ?, ?) "
              "ON CONFLICT (name) DO UPDATE SET running = excluded.running, run = excluded.run")
        .Bind(name)
        .Bind(value)
        .Bind(Run())
        .Step();
    transaction.Commit();
    return ConfigStatus_Done;
}

int WriteBoth(std::string_view name, std::string_view value) {
    Transaction transaction(TheDatabase());
    Statement(TheDatabase(),
              "INSERT INTO setting (name, stored, running, run) VALUES (?, ?, ?, ?) "
              "ON CONFLICT (name) DO UPDATE SET stored = excluded.stored, "
              "running = excluded.running, run = excluded.run")
        .Bind(name)
        .Bind(value)
        .Bind(value)
        .Bind(Run())
        .Step();
    transaction.Commit();
    return ConfigStatus_Done;
}

}  // namespace

// The empty text stands for the default, here and for the run.
void SetStateFolder(std::string const& folder) {
    std::lock_guard<std::mutex> const lock(storeMutex);
    TheStore().folder.reset();
    if (!folder.empty()) {
        TheStore().folder = fs::absolute(folder).string();
    }
    TheStore().connection.Close();
}

void SetServiceRun(std::string const& run) {
    std::lock_guard<std::mutex> const lock(storeMutex);
    TheStore().run = run;
}

void SetStorePatience(int milliseconds) {
    std::lock_guard<std::mutex> const lock(storeMutex);
    TheStore().patience = milliseconds;
    TheStore().connection.Close();
}

bool DeclareSetting(std::string const& name, std::string const& defaultValue) {
    if (!IsSettingName(name) || !IsSettingValue(defaultValue)) {
        Fail(ConfigStatus_BadArgument, "DeclareSetting", name,
             "the name or the default value breaks the rules");
        return false;
    }
    std::lock_guard<std::mutex> const lock(storeMutex);
    TheStore().defaults[name] = defaultValue;
    return true;
}

}  // namespace QuilloHost

using namespace QuilloHost;

int Cfg_GetBoolAttrValue(char const* name, int* value) {
    char const* const call = __func__;
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, call, "", "there is no name, or no place for it");
    }
    return Guarded(call, name, [&] {
        int const status = CheckName(call, name);
        return status == ConfigStatus_Done ? ReadBoolean(call, name, *value) : status;
    });
}

int Cfg_SetAttrValue(char const* name, char const* value) {
    char const* const call = __func__;
    if (name == nullptr || value == nullptr) {
        return Fail(ConfigStatus_BadArgument, call, "", "there is no name, or no value");
    }
    return Guarded(call, name, [&] {
        int const status = CheckAssignment(call, name, value);
        return status == ConfigStatus_Done ? WriteRunning(name, value) : status;
    });
}

long ConfigUpdate(char const* assignment) {
    char const* const call = __func__;
    std::string_view const line = assignment != nullptr ? assignment : "";
    std::size_t const equals = line.find('=');
    if (equals == std::string_view::npos) {
        return Fail(ConfigStatus_BadArgument, call, line, "an assignment has the form NAME=VALUE");
    }
    std::string_view const name = line.substr(0, equals);
    std::string_view const value = line.substr(equals + 1);
    return Guarded(call, name, [&] {
        int const status = CheckAssignment(call, name, value);
        return status == ConfigStatus_Done ? WriteBoth(name, value) : status;
    });
}
