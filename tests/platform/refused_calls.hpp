// System calls of the host platform that fail with a chosen error.
//
// A program that links refused_calls.cpp wraps them (see CMakeLists.txt). While a `RefusedCalls`
// lives, those that it names fail; the others are the system's.
#ifndef QUILLO_TESTS_REFUSED_CALLS_HPP
#define QUILLO_TESTS_REFUSED_CALLS_HPP

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <map>
#include <string>

class RefusedCalls {
public:
    RefusedCalls();
    RefusedCalls(RefusedCalls const&) = delete;
    RefusedCalls& operator=(RefusedCalls const&) = delete;
    ~RefusedCalls();

    struct Refusal {
        int error;
        int allowed = 0;      // so many calls pass before one fails
        bool isOnce = false;  // those behind the one that fails pass, too
    };

    // The calls that fail, by name: "stat", "fopen", "fread", "fseeko", "opendir", "readdir",
    // "fstat", "ioctl", "F_GETPIPE_SZ", "F_SETPIPE_SZ", "statvfs", "getifaddrs", "uname",
    // "pthread_create". With "fread" the files are counted that are opened: one gives its first
    // `bytes` bytes, and then it cannot be read on.
    std::map<std::string, Refusal> refusals;
    std::size_t bytes = 0;

    // Whether a call failed since this was set.
    bool hasFailed = false;

    // The first calls of write: at most so many bytes are written, or none and the errno is the
    // number below 0. Those behind them are the system's. Those to standard error are counted by
    // themselves.
    std::deque<ssize_t> writes;
    std::deque<ssize_t> logWrites;
};

#endif
