// The system calls of the capture channel, watched and refused.
//
// An executable that links system_calls.cpp wraps them (see CMakeLists.txt). While a `SystemCalls`
// lives, each of them becomes a line of the recording platform's trace, with the role of its
// descriptor in the place of its number:
//
//     pipe2
//     fdopen write end, w
//     loareq_initialize
//     loareq_free
//     fclose stream
//     read read end, 256: 12
//     close read end
#ifndef QUILLO_TESTS_SYSTEM_CALLS_HPP
#define QUILLO_TESTS_SYSTEM_CALLS_HPP

#include <sys/types.h>

#include <cstdio>
#include <deque>
#include <string>

// The outcome of one read().
struct ReadStep {
    enum { Real, Fails, Claims } kind;
    ssize_t number;  // Real: what is asked for at most; Fails: errno; Claims: the result
};

class SystemCalls {
public:
    SystemCalls();
    SystemCalls(SystemCalls const&) = delete;
    SystemCalls& operator=(SystemCalls const&) = delete;
    ~SystemCalls();

    int pipeError = 0;           // errno of a refusal; 0: none
    int fdopenError = 0;         // likewise
    int pollError = 0;           // likewise
    int closeError = 0;          // what close() says, though the descriptor is gone
    int fcloseError = 0;         // what fclose() says, and what the stream had buffered is lost
    std::deque<ReadStep> reads;  // the first reads; those after them are real

    int readEnd = -1;
    int writeEnd = -1;
    std::FILE* stream = nullptr;

    std::string RoleOf(int fd) const;
};

#endif
