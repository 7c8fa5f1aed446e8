#include "platform/refused_calls.hpp"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>

extern "C" {

int __real_stat(char const* path, struct stat* status);
std::FILE* __real_fopen(char const* path, char const* mode);
int __real_fseeko(std::FILE* file, off_t offset, int whence);
DIR* __real_opendir(char const* path);
dirent* __real_readdir(DIR* folder);
int __real_fstat(int fd, struct stat* status);
int __real_ioctl(int fd, unsigned long request, void* argument);
int __real_fcntl(int fd, int command, long argument);
int __real_statvfs(char const* path, struct statvfs* figures);
int __real_getifaddrs(ifaddrs** list);
ssize_t __real_write(int fd, void const* data, std::size_t size);

int __wrap_stat(char const* path, struct stat* status);
std::FILE* __wrap_fopen(char const* path, char const* mode);
int __wrap_fseeko(std::FILE* file, off_t offset, int whence);
DIR* __wrap_opendir(char const* path);
dirent* __wrap_readdir(DIR* folder);
int __wrap_fstat(int fd, struct stat* status);
int __wrap_ioctl(int fd, unsigned long request, void* argument);
int __wrap_fcntl(int fd, int command, long argument);
int __wrap_statvfs(char const* path, struct statvfs* figures);
int __wrap_getifaddrs(ifaddrs** list);
ssize_t __wrap_write(int fd, void const* data, std::size_t size);
}

namespace {

RefusedCalls* refused = nullptr;

// Whether the call `name` fails; its errno is then set.
bool Fails(char const* name) {
    if (refused == nullptr || refused->errors.count(name) == 0) {
        return false;
    }
    errno = refused->errors[name];
    return true;
}

// Counts down what a file or a folder still gives.
bool IsAtTheBreak(char const* name) {
    if (refused == nullptr || refused->errors.count(name) == 0 || refused->before-- > 0) {
        return false;
    }
    return Fails(name);
}

ssize_t ReadByte(void*, char* buffer, std::size_t) {
    buffer[0] = 'x';
    return IsAtTheBreak("fread") ? -1 : 1;
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
    if (refused != nullptr && refused->errors.count("read") != 0) {
        return __real_fopen(path, "ae");
    }
    if (refused != nullptr && refused->errors.count("fread") != 0) {
        return fopencookie(nullptr, "r", {ReadByte, nullptr, nullptr, nullptr});
    }
    return __real_fopen(path, mode);
}

int __wrap_fseeko(std::FILE* file, off_t offset, int whence) {
    return Fails("fseeko") ? -1 : __real_fseeko(file, offset, whence);
}

DIR* __wrap_opendir(char const* path) {
    return Fails("opendir") ? nullptr : __real_opendir(path);
}

dirent* __wrap_readdir(DIR* folder) {
    return IsAtTheBreak("readdir") ? nullptr : __real_readdir(folder);
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
