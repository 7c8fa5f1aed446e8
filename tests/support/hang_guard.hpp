// Work that must not wait for ever: instead of hanging, the program dies of SIGALRM.
#ifndef QUILLO_TESTS_HANG_GUARD_HPP
#define QUILLO_TESTS_HANG_GUARD_HPP

#include <unistd.h>

// An alarm that was set before goes on behind the guarded work.
class HangGuard {
public:
    HangGuard() : before(alarm(patience)) {}
    HangGuard(HangGuard const&) = delete;
    HangGuard& operator=(HangGuard const&) = delete;
    ~HangGuard() { alarm(before); }

private:
    static constexpr unsigned patience = 60;  // seconds: far more than any of it takes
    unsigned const before;
};

#endif
