#include "platform/refused_calls.hpp"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

extern "C" {

int __real_stat(char const* path, struct stat* status);
std::FILE* __real_fopen(char const* path, char const* mode);
int __real_fileno(std::FILE* file);
int __real_fseeko(std::FILE* file, off_t offset, int whence);
DIR* __real_opendir(char const* path);
dirent* __real_readdir(DIR* folder);
int __real_fstat(int fd, struct stat* status);
int __real_ioctl(int fd, unsigned long request, void* argument);
int __real_fcntl(int fd, int command, long argument);
int __real_statvfs(char const* path, struct statvfs* figures);
int __real_getifaddrs(ifaddrs** list);
int __real_uname(utsname* names);
ssize_t __real_write(int fd, void const* data, std::size_t size);

int __wrap_stat(char const* path, struct stat* status);
std::FILE* __wrap_fopen(char const* path, char const* mode);
int __wrap_fileno(std::FILE* file);
int __wrap_fseeko(std::FILE* file, off_t offset, int whence);
DIR* __wrap_opendir(char const* path);
dirent* __wrap_readdir(DIR* folder);
int __wrap_fstat(int fd, struct stat* status);
int __wrap_ioctl(int fd, unsigned long request, void* argument);
int __wrap_fcntl(int fd, int command, long argument);
int __wrap_statvfs(char const* path, struct statvfs* figures);
int __wrap_getifaddrs(ifaddrs** list);
int __wrap_uname(utsname* names);
ssize_t __wrap_write(int fd, void const* data, std::size_t size);
}

namespace {

RefusedCalls* refused = nullptr;

// Whether this call of `name` fails; its errno is then set.
bool Fails(char const* name) {
    if (refused == nullptr) {
        return false;
    }
    auto const found = refused->refusals.find(name);
    if (found == refused->refusals.end() || found->second.allowed-- > 0) {
        return false;
    }
    int const error = found->second.error;
    if (found->second.isOnce) {
        refused->refusals.erase(found);
    }
    refused->hasFailed = true;
    errno = error;
    return true;
}

// A file that breaks off. One is open at a time.
struct BreakingFile {
    std::FILE* file = nullptr;
    std::FILE* stream = nullptr;
    std::size_t left = 0;
    int error = 0;
};

BreakingFile breaking;

ssize_t ReadOn(void*, char* buffer, std::size_t size) {
    if (breaking.left == 0) {
        errno = breaking.error;
        return -1;
    }
    std::size_t const count = std::fread(buffer, 1, std::min(size, breaking.left), breaking.file);
    breaking.left -= count;
    return static_cast<ssize_t>(count);
}

int Seek(void*, off64_t* offset, int whence) {
    int const result = __real_fseeko(breaking.file, *offset, whence);
    *offset = ftello(breaking.file);
    return result;
}

int Close(void*) {
    std::FILE* const file = breaking.file;
    breaking = {};
    return std::fclose(file);
}

}  // namespace

RefusedCalls::RefusedCalls() {
    refused = this;
}

RefusedCalls::~RefusedCalls() {
    refused = nullptr;
}

int __wrap_stat(char const* path, struct stat* status) {
    return Fails("stat") ? -1 : __real_stat(path, status);
}

std::FILE* __wrap_fopen(char const* path, char const* mode) {
    if (Fails("fopen")) {
        return nullptr;
    }
    std::FILE* const file = __real_fopen(path, mode);
    if (file == nullptr || !Fails("fread")) {
        return file;
    }
    int const error = errno;
    std::FILE* const stream = fopencookie(nullptr, "r", {ReadOn, nullptr, Seek, Close});
    breaking = {file, stream, refused->bytes, error};
    return stream;
}

int __wrap_fileno(std::FILE* file) {
    return __real_fileno(file != nullptr && file == breaking.stream ? breaking.file : file);
}

int __wrap_fseeko(std::FILE* file, off_t offset, int whence) {
    return Fails("fseeko") ? -1 : __real_fseeko(file, offset, whence);
}

DIR* __wrap_opendir(char const* path) {
    return Fails("opendir") ? nullptr : __real_opendir(path);
}

dirent* __wrap_readdir(DIR* folder) {
    return Fails("readdir") ? nullptr : __real_readdir(folder);
}

int __wrap_fstat(int fd, struct stat* status) {
    return Fails("fstat") ? -1 : __real_fstat(fd, status);
}

int __wrap_ioctl(int fd, unsigned long request, void* argument) {
    return Fails("ioctl") ? -1 : __real_ioctl(fd, request, argument);
}

int __wrap_fcntl(int fd, int command, long argument) {
    bool const fails = (command == F_GETPIPE_SZ && Fails("F_GETPIPE_SZ")) ||
                       (command == F_SETPIPE_SZ && Fails("F_SETPIPE_SZ"));
    return fails ? -1 : __real_fcntl(fd, command, argument);
}

int __wrap_statvfs(char const* path, struct statvfs* figures) {
    return Fails("statvfs") ? -1 : __real_statvfs(path, figures);
}

int __wrap_getifaddrs(ifaddrs** list) {
    return Fails("getifaddrs") ? -1 : __real_getifaddrs(list);
}

int __wrap_uname(utsname* names) {
    return Fails("uname") ? -1 : __real_uname(names);
}

ssize_t __wrap_write(int fd, void const* data, std::size_t size) {
    if (refused == nullptr) {
        return __real_write(fd, data, size);
    }
    std::deque<ssize_t>& steps = fd == STDERR_FILENO ? refused->logWrites : refused->writes;
    if (steps.empty()) {
        return __real_write(fd, data, size);
    }
    ssize_t const step = steps.front();
    steps.pop_front();
    if (step < 0) {
        errno = static_cast<int>(-step);
        return -1;
    }
    std::size_t const most = std::min(size, static_cast<std::size_t>(step));
    return most == 0 ? 0 : __real_write(fd, data, most);
}

// The C++ library's as well.
extern "C" int pthread_create(pthread_t* thread, pthread_attr_t const* attributes,
                              void* (*run)(void*), void* argument) noexcept {
    typedef int Create(pthread_t*, pthread_attr_t const*, void* (*)(void*), void*);
    static Create* const create = reinterpret_cast<Create*>(dlsym(RTLD_NEXT, "pthread_create"));
    return Fails("pthread_create") ? errno : create(thread, attributes, run, argument);
}
