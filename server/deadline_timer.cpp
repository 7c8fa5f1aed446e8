#include "deadline_timer.hpp"

#include <cerrno>
#include <csignal>
#include <system_error>

namespace QuilloServer {

DeadlineTimer::DeadlineTimer() {
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    if (timer_create(CLOCK_MONOTONIC, &event, &timer_) != 0) {
        throw std::system_error(errno, std::generic_category(), "timer_create");
    }
}

DeadlineTimer::~DeadlineTimer() {
    timer_delete(timer_);
}

void DeadlineTimer::Set(int milliseconds) {
    itimerspec time = {};
    time.it_value.tv_sec = milliseconds / 1000;
    time.it_value.tv_nsec = milliseconds % 1000 * 1000000L;
    timer_settime(timer_, 0, &time, nullptr);
}

}  // namespace QuilloServer
