#include "platform/disk_calls.hpp"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

namespace {

namespace fs = std::filesystem;

using Trouble = DiskCalls::Trouble;

struct State {
    bool isOn = false;
    int allowed = 0;
    Trouble trouble = Trouble::Failure;
    int error = 0;
    std::string firstFailed;
};

State state;

// What a folder would hold after a power cut: the names that it and those in it had when they were
// synced, and of each file the bytes that it had when it was synced.
struct Durable {
    fs::path folder;
    std::map<fs::path, std::set<fs::path>> names;  // by folder
    std::map<fs::path, std::string> bytes;

    void Sync(fs::path const& path) {
        if (!fs::is_directory(path)) {
            std::ifstream file(path, std::ios::binary);
            bytes[path] = std::string(std::istreambuf_iterator<char>(file), {});
            return;
        }
        names[path].clear();
        for (fs::directory_entry const& entry : fs::directory_iterator(path)) {
            names[path].insert(entry.path());
            if (entry.is_directory()) {
                names[entry.path()];
            }
        }
    }

    void SyncAll() {
        Sync(folder);
        for (fs::directory_entry const& entry : fs::recursive_directory_iterator(folder)) {
            Sync(entry.path());
        }
    }

    void Restore() const {
        for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
            fs::remove_all(entry.path());
        }
        RestoreIn(folder);
    }

    void RestoreIn(fs::path const& place) const {
        for (fs::path const& name : names.at(place)) {
            auto const file = bytes.find(name);
            if (names.count(name) != 0) {
                fs::create_directory(name);
                RestoreIn(name);
            } else {
                std::ofstream(name, std::ios::binary)
                    << (file != bytes.end() ? file->second : std::string());
            }
        }
    }
};

Durable durable;

// With the calls that it makes itself left out of the count.
int Sync(int file) {
    if (state.isOn && !durable.folder.empty()) {
        state.isOn = false;
        durable.Sync(fs::read_symlink("/proc/self/fd/" + std::to_string(file)));
        state.isOn = true;
    }
    return 0;
}

bool IsOfReading() {
    return state.trouble == Trouble::ReadFailure || state.trouble == Trouble::ReadFailureFromThenOn;
}

bool IsShort() {
    return state.trouble == Trouble::ShortWrite || state.trouble == Trouble::ShortRead;
}

bool IsTrouble() {
    return state.isOn && !IsOfReading() && !IsShort() && state.allowed-- <= 0;
}

bool IsReadTrouble() {
    return state.isOn && IsOfReading() && state.allowed-- <= 0;
}

[[noreturn]] void Die() {
    kill(getpid(), SIGKILL);
    for (;;) {
        pause();
    }
}

// What the call in trouble gives, if it returns.
int Fail(char const* call) {
    if (state.trouble == Trouble::CutThatLoses) {
        DiskCalls::LoseUnsynced();
    }
    if (!durable.folder.empty()) {
        Die();
    }
    if (state.firstFailed.empty()) {
        state.firstFailed = call;
    }
    state.isOn = state.trouble == Trouble::FailureFromThenOn ||
                 state.trouble == Trouble::ReadFailureFromThenOn;
    errno = state.error;
    return -1;
}

// How many of `size` bytes a call writes or reads: half of them, when it is the one in trouble.
std::size_t Taken(char const* call, Trouble trouble, std::size_t size) {
    if (!state.isOn || state.trouble != trouble || state.allowed-- > 0) {
        return size;
    }
    state.firstFailed = call;
    state.isOn = false;
    return (size + 1) / 2;
}

// The next definition of NAME, the C library's or a sanitizer's, called.
template <class Call, class... Args>
auto Real(char const* name, Args... args) {
    return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name))(args...);
}

template <class Call, class Offset>
ssize_t WriteAt(char const* name, int file, void const* bytes, std::size_t size, Offset offset) {
    if (!IsTrouble()) {
        return Real<Call>(name, file, bytes, Taken(name, Trouble::ShortWrite, size), offset);
    }
    if (state.trouble == Trouble::CutInTheMiddle) {
        Real<Call>(name, file, bytes, size / 2, offset);
    }
    return Fail(name);
}

template <class Call>
int Open(char const* name, char const* path, int flags, mode_t mode) {
    bool const isTrouble = (flags & O_CREAT) != 0 ? IsTrouble() : IsReadTrouble();
    return isTrouble ? Fail(name) : Real<Call>(name, path, flags, mode);
}

template <class Call, class... Args>
int Look(char const* name, Args... args) {
    return IsReadTrouble() ? Fail(name) : Real<Call>(name, args...);
}

int Control(char const* name, int file, int command, void* argument) {
    bool const isTrouble = (command == F_SETLK || command == F_GETLK) && IsReadTrouble();
    return isTrouble ? Fail(name) : Real<int(int, int, ...)>(name, file, command, argument);
}

}  // namespace

DiskCalls::DiskCalls(int allowed, Trouble trouble, int error) {
    durable = {};
    state = {true, allowed, trouble, error, ""};
}

DiskCalls::DiskCalls(int allowed, Trouble trouble, std::string const& folder) {
    durable = {fs::canonical(folder), {}, {}};
    durable.SyncAll();
    state = {true, allowed, trouble, 0, ""};
}

void DiskCalls::LoseUnsynced() {
    state.isOn = false;
    durable.Restore();
}

DiskCalls::~DiskCalls() {
    state.isOn = false;
}

std::string const& DiskCalls::FirstFailed() {
    return state.firstFailed;
}

extern "C" {

int open(char const* path, int flags, ...) {
    std::va_list args;
    va_start(args, flags);
    mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(args, mode_t) : 0;
    va_end(args);
    return Open<decltype(open)>("open", path, flags, mode);
}

int open64(char const* path, int flags, ...) {
    std::va_list args;
    va_start(args, flags);
    mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(args, mode_t) : 0;
    va_end(args);
    return Open<decltype(open64)>("open64", path, flags, mode);
}

int mkdir(char const* path, mode_t mode) noexcept {
    return IsTrouble() ? Fail("mkdir") : Real<int(char const*, mode_t)>("mkdir", path, mode);
}

ssize_t write(int file, void const* bytes, std::size_t size) {
    using Call = ssize_t(int, void const*, std::size_t);
    bool const isFile = file > STDERR_FILENO;
    if (isFile && IsTrouble()) {
        if (state.trouble == Trouble::CutInTheMiddle) {
            Real<Call>("write", file, bytes, size / 2);
        }
        return Fail("write");
    }
    return Real<Call>("write", file, bytes,
                      isFile ? Taken("write", Trouble::ShortWrite, size) : size);
}

ssize_t pwrite(int file, void const* bytes, std::size_t size, off_t offset) {
    return WriteAt<decltype(pwrite)>("pwrite", file, bytes, size, offset);
}

ssize_t pwrite64(int file, void const* bytes, std::size_t size, off64_t offset) {
    return WriteAt<decltype(pwrite64)>("pwrite64", file, bytes, size, offset);
}

int ftruncate(int file, off_t size) noexcept {
    return IsTrouble() ? Fail("ftruncate") : Real<int(int, off_t)>("ftruncate", file, size);
}

int ftruncate64(int file, off64_t size) noexcept {
    return IsTrouble() ? Fail("ftruncate64") : Real<int(int, off64_t)>("ftruncate64", file, size);
}

int fsync(int file) {
    return IsTrouble() ? Fail("fsync") : Sync(file);
}

int fdatasync(int file) {
    return IsTrouble() ? Fail("fdatasync") : Sync(file);
}

int rename(char const* from, char const* to) noexcept {
    return IsTrouble() ? Fail("rename") : Real<int(char const*, char const*)>("rename", from, to);
}

int unlink(char const* path) noexcept {
    return IsTrouble() ? Fail("unlink") : Real<int(char const*)>("unlink", path);
}

int rmdir(char const* path) noexcept {
    return IsTrouble() ? Fail("rmdir") : Real<int(char const*)>("rmdir", path);
}

ssize_t read(int file, void* bytes, std::size_t size) {
    return IsReadTrouble()
               ? Fail("read")
               : Real<decltype(read)>("read", file, bytes, Taken("read", Trouble::ShortRead, size));
}

ssize_t pread64(int file, void* bytes, std::size_t size, off64_t offset) {
    return IsReadTrouble()
               ? Fail("pread64")
               : Real<decltype(pread64)>("pread64", file, bytes,
                                         Taken("pread64", Trouble::ShortRead, size), offset);
}

int stat(char const* path, struct stat* status) noexcept {
    return Look<int(char const*, struct stat*)>("stat", path, status);
}

int stat64(char const* path, struct stat64* status) noexcept {
    return Look<int(char const*, struct stat64*)>("stat64", path, status);
}

int lstat(char const* path, struct stat* status) noexcept {
    return Look<int(char const*, struct stat*)>("lstat", path, status);
}

int lstat64(char const* path, struct stat64* status) noexcept {
    return Look<int(char const*, struct stat64*)>("lstat64", path, status);
}

int fstat64(int file, struct stat64* status) noexcept {
    return Look<int(int, struct stat64*)>("fstat64", file, status);
}

int fcntl(int file, int command, ...) {
    std::va_list args;
    va_start(args, command);
    void* const argument = va_arg(args, void*);
    va_end(args);
    return Control("fcntl", file, command, argument);
}

int fcntl64(int file, int command, ...) {
    std::va_list args;
    va_start(args, command);
    void* const argument = va_arg(args, void*);
    va_end(args);
    return Control("fcntl64", file, command, argument);
}

void* mmap64(void* place, std::size_t size, int protection, int flags, int file,
             off64_t offset) noexcept {
    bool const isTrouble = file >= 0 && IsReadTrouble();
    using Call = void*(void*, std::size_t, int, int, int, off64_t);
    return isTrouble && Fail("mmap64") != 0
               ? MAP_FAILED
               : Real<Call>("mmap64", place, size, protection, flags, file, offset);
}
}
