// How long the attribute service takes to answer: told to whoever asked to be told.
#ifndef QUILLO_HOST_QUERY_TIMER_HPP
#define QUILLO_HOST_QUERY_TIMER_HPP

#include <chrono>

namespace QuilloHost {

// Tells the watch of host.hpp when it goes out of scope. `object` outlives it.
class QueryTimer {
public:
    explicit QueryTimer(char const* object) noexcept : object_(object) {}
    QueryTimer(QueryTimer const&) = delete;
    QueryTimer& operator=(QueryTimer const&) = delete;
    ~QueryTimer();

private:
    char const* object_;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace QuilloHost

#endif
