#include "platform/system_calls.hpp"

#include <cerrno>

extern "C" {

int __real_statvfs(char const* path, struct statvfs* figures);
int __real_getifaddrs(ifaddrs** list);
void __real_freeifaddrs(ifaddrs* list);
unsigned __real_if_nametoindex(char const* name);

int __wrap_statvfs(char const* path, struct statvfs* figures);
int __wrap_getifaddrs(ifaddrs** list);
void __wrap_freeifaddrs(ifaddrs* list);
unsigned __wrap_if_nametoindex(char const* name);
}

SystemCalls& SystemCalls::Now() {
    static SystemCalls calls;
    return calls;
}

int __wrap_statvfs(char const* path, struct statvfs* figures) {
    auto const& answer = SystemCalls::Now().statvfs;
    return answer ? answer(path, *figures) : __real_statvfs(path, figures);
}

int __wrap_getifaddrs(ifaddrs** list) {
    std::optional<ifaddrs*> const& set = SystemCalls::Now().interfaces;
    if (!set) {
        return __real_getifaddrs(list);
    }
    *list = *set;
    errno = ENOMEM;
    return *set != nullptr ? 0 : -1;
}

void __wrap_freeifaddrs(ifaddrs* list) {
    if (!SystemCalls::Now().interfaces) {
        __real_freeifaddrs(list);
    }
}

unsigned __wrap_if_nametoindex(char const* name) {
    SystemCalls const& now = SystemCalls::Now();
    if (!now.interfaces) {
        return __real_if_nametoindex(name);
    }
    auto const found = now.indices.find(name);
    return found != now.indices.end() ? found->second : 0;
}
