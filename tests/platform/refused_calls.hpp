// System calls of the host platform that fail with a chosen error.
//
// A program that links refused_calls.cpp wraps them (see CMakeLists.txt). While a `RefusedCalls`
// lives, those that it names fail; the others are the system's.
#ifndef QUILLO_TESTS_REFUSED_CALLS_HPP
#define QUILLO_TESTS_REFUSED_CALLS_HPP

#include <sys/types.h>

#include <deque>
#include <map>
#include <string>

class RefusedCalls {
public:
    RefusedCalls();
    RefusedCalls(RefusedCalls const&) = delete;
    RefusedCalls& operator=(RefusedCalls const&) = delete;
    ~RefusedCalls();

    // The errno of each call that fails, by its name: "stat", "fopen", "fread", "fseeko",
    // "opendir", "readdir", "fstat", "ioctl", "F_GETPIPE_SZ", "F_SETPIPE_SZ", "statvfs",
    // "getifaddrs", "pthread_create". With "read" a file is opened that cannot be read, which is
    // EBADF.
    std::map<std::string, int> errors;

    // What an opened file or folder gives before its "fread" or "readdir" fails: bytes or entries.
    int before = 0;

    // The first calls of write: at most so many bytes are written, or none and the errno is the
    // number below 0. Those behind them are the system's. Those to standard error are counted by
    // themselves.
    std::deque<ssize_t> writes;
    std::deque<ssize_t> logWrites;
};

#endif
