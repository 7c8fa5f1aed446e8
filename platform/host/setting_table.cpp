// One table in a SQLite database, in WAL mode, a row a setting that was ever set.
//
//     setting(name TEXT PRIMARY KEY, stored TEXT, running TEXT, run TEXT)
//
// `running` holds as long as `run` is the run of the service, which is a boot of the machine unless
// the set-up says otherwise; then `stored` holds. Both are changed in one transaction, and every
// commit is synced, and so is a folder that was made for it: a power cut leaves the old values or
// the new ones.
//
// No connection outlives a call. SQLite keeps account of its locks by process, and a fork copies
// that account but not the locks: a connection that was open then, used or not, would let the one
// process remove the log that the other writes to.
#include "host/setting_table.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "host/database.hpp"
#include "host/host.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

namespace fs = std::filesystem;

struct Place {
    std::optional<std::string> folder;
    std::optional<std::string> run;
    int patience = 2000;
};

Place& ThePlace() {
    static Place place;
    return place;
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
    if (ThePlace().run) {
        return *ThePlace().run;
    }
    std::string const file = MachineRoots().proc + "/sys/kernel/random/boot_id";
    std::optional<std::string> const boot = ReadFirstLine(file);
    if (!boot) {
        throw std::runtime_error(file + " cannot be read, and without it a running value has no " +
                                 "end: mount /proc");
    }
    return *boot;
}

// Has the names in `folder` last through a power cut, unless its file system knows no such thing.
// Returns the error, or 0.
int SyncNames(fs::path const& folder) {
    int const fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        return errno;
    }
    int const error = fsync(fd) == 0 || errno == EINVAL ? 0 : errno;
    close(fd);
    return error;
}

// Returns the error, or 0, also for one that is there.
int MakeOneFolder(fs::path const& folder, mode_t mode) {
    if (mkdir(folder.c_str(), mode) != 0) {
        return errno == EEXIST ? 0 : errno;
    }
    int const error = SyncNames(folder.parent_path());
    if (error != 0) {
        rmdir(folder.c_str());  // the next call makes and syncs it
    }
    return error;
}

// As MakeOneFolder, with those that it lies in.
int MakeFolders(fs::path const& folder, mode_t mode) {
    int const error = MakeOneFolder(folder, mode);
    if (error != ENOENT || !folder.has_relative_path()) {
        return error;
    }
    int const errorAbove = MakeFolders(folder.parent_path(), S_IRWXU | S_IRWXG | S_IRWXO);
    return errorAbove != 0 ? errorAbove : MakeOneFolder(folder, mode);
}

fs::path Folder() {
    return fs::absolute(ThePlace().folder.value_or(DefaultFolder()) + "/").parent_path();
}

// SQLite follows no symbolic link, and would not even follow those that the folder lies behind.
std::string FileIn(fs::path const& folder) {
    return fs::canonical(folder) / "configuration.db";
}

bool IsThere(std::string const& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

// The database; nothing when there is none yet.
std::optional<std::string> FindFile() {
    fs::path const folder = Folder();
    struct stat status {};
    if (stat((folder / "configuration.db").c_str(), &status) == 0) {
        return FileIn(folder);
    }
    if (errno == ENOENT) {
        return std::nullopt;
    }
    throw std::runtime_error(folder.string() + " cannot be read: " + std::strerror(errno) +
                             ": QUILLO_STATE_DIR names the folder of the store");
}

Database OpenDatabase() {
    fs::path const folder = Folder();
    if (std::error_code const error = MakeStateFolder()) {
        throw std::runtime_error(folder.string() + " cannot be made: " + error.message() +
                                 ": QUILLO_STATE_DIR names the folder of the store");
    }
    Database database(FileIn(folder), ThePlace().patience);
    database.Run(
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = FULL;"
        "CREATE TABLE IF NOT EXISTS setting"
        "(name TEXT PRIMARY KEY, stored TEXT, running TEXT, run TEXT) WITHOUT ROWID");
    return database;
}

// Runs a statement that writes name, ?1, value, ?2, and run, ?3: by itself it is a transaction.
void Write(char const* sql, std::string_view name, std::string_view value) {
    Database database = OpenDatabase();
    Statement(database, sql).Bind(name).Bind(value).Bind(Run()).Step();
}

// Keeps the connections of other processes from moving their log into the database, which the last
// one does when it closes, under a lock of these bytes (see SQLite's file format). Until then a
// database without a log stays as it is. Takes no right to write.
class StillDatabase {
public:
    explicit StillDatabase(std::string const& path)
        : fd_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)) {
        struct flock shared {};
        shared.l_type = F_RDLCK;
        shared.l_whence = SEEK_SET;
        shared.l_start = 0x40000002;
        shared.l_len = 510;
        isStill_ = fd_ >= 0 && fcntl(fd_, F_SETLK, &shared) == 0 && !IsThere(path + "-wal") &&
                   !IsThere(path + "-journal");
    }
    StillDatabase(StillDatabase const&) = delete;
    StillDatabase& operator=(StillDatabase const&) = delete;
    ~StillDatabase() {
        if (fd_ >= 0) {
            close(fd_);
        }
    }

    bool IsStill() const { return isStill_; }

private:
    int fd_;
    bool isStill_;
};

// A database that was made, but not set up any more, has no table.
bool HasTable(Database& database) {
    return Statement(database, "SELECT 1 FROM sqlite_master WHERE name = 'setting'").Step();
}

std::optional<std::string> FindValueIn(Database&& database, std::string_view name) {
    if (!HasTable(database)) {
        return std::nullopt;
    }
    Statement query(database,
                    "SELECT coalesce(CASE WHEN run = ? THEN running END, stored) FROM setting "
                    "WHERE name = ?");
    query.Bind(Run()).Bind(name);
    return query.Step() ? query.Text() : std::nullopt;
}

}  // namespace

std::optional<std::string> FindValue(std::string_view name) {
    std::optional<std::string> const file = FindFile();
    if (!file) {
        return std::nullopt;
    }
    try {
        return FindValueIn(Database(*file, ThePlace().patience, Access::Read), name);
    } catch (NoAccess const&) {  // as where SQLite may put no file beside it
        StillDatabase const still(*file);
        if (!still.IsStill()) {
            throw;
        }
        return FindValueIn(Database(*file, ThePlace().patience, Access::ReadUnchanging), name);
    }
}

void WriteRunning(std::string_view name, std::string_view value) {
    Write(
        "INSERT INTO setting (name, running, run) VALUES (?1, ?2, ?3) "
        "ON CONFLICT (name) DO UPDATE SET running = ?2, run = ?3",
        name, value);
}

void WriteStoredAndRunning(std::string_view name, std::string_view value) {
    Write(
        "INSERT INTO setting (name, stored, running, run) VALUES (?1, ?2, ?2, ?3) "
        "ON CONFLICT (name) DO UPDATE SET stored = ?2, running = ?2, run = ?3",
        name, value);
}

void SetStateFolder(std::string const& folder) {
    ThePlace().folder = folder;
}

// The owner's alone from its first moment on.
std::error_code MakeStateFolder() {
    return {MakeFolders(Folder(), S_IRWXU), std::generic_category()};
}

void SetServiceRun(std::string const& run) {
    ThePlace().run = run;
}

void SetStorePatience(int milliseconds) {
    ThePlace().patience = milliseconds;
}

}  // namespace QuilloHost
