// Kills the process when something takes too long. No code that runs in the process can hold it up.
#ifndef QUILLO_SERVER_DEADLINE_TIMER_HPP
#define QUILLO_SERVER_DEADLINE_TIMER_HPP

#include <ctime>

namespace QuilloServer {

class DeadlineTimer {
public:
    // Throws std::system_error when the system has no timer to give.
    DeadlineTimer();
    DeadlineTimer(DeadlineTimer const&) = delete;
    DeadlineTimer& operator=(DeadlineTimer const&) = delete;
    ~DeadlineTimer();

    // The process is killed (SIGKILL) that many milliseconds from now, unless this is called again
    // before; with 0 it is not.
    void Set(int milliseconds);

private:
    timer_t timer_ = {};
};

}  // namespace QuilloServer

#endif
