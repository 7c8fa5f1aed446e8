// The system calls of the objects, answered by the test. The executable that links system_calls.cpp
// wraps them (see CMakeLists.txt); where a test has set nothing, the real ones run.
#ifndef QUILLO_TESTS_PLATFORM_SYSTEM_CALLS_HPP
#define QUILLO_TESTS_PLATFORM_SYSTEM_CALLS_HPP

#include <ifaddrs.h>
#include <sys/statvfs.h>

#include <functional>
#include <map>
#include <optional>
#include <string>

struct SystemCalls {
    std::function<int(std::string const& place, struct statvfs& figures)> statvfs;
    std::optional<ifaddrs*> interfaces;  // null: getifaddrs fails with ENOMEM
    std::map<std::string, unsigned> indices;

    // What holds at present.
    static SystemCalls& Now();
};

// While it lives a test may set `SystemCalls::Now()`.
class ChangedSystemCalls {
public:
    ChangedSystemCalls() = default;
    ChangedSystemCalls(ChangedSystemCalls const&) = delete;
    ChangedSystemCalls& operator=(ChangedSystemCalls const&) = delete;
    ~ChangedSystemCalls() { SystemCalls::Now() = SystemCalls(); }
};

#endif
