// How long the page at hand has waited for the device's objects.
#ifndef QUILLO_SERVER_QUERY_TIMES_HPP
#define QUILLO_SERVER_QUERY_TIMES_HPP

#include <chrono>

namespace QuilloServer {

struct QueryTimes {
    std::chrono::nanoseconds all = {};
    std::chrono::nanoseconds longest = {};
    char object[64] = "";  // that the longest one was of, cut when its name is longer; empty: none

    void Add(char const* asked, std::chrono::nanoseconds taken) noexcept;
};

// Counts from now on, and from nothing.
void BeginQueryTimes() noexcept;

// What has been counted.
QueryTimes const& CountedQueryTimes() noexcept;

}  // namespace QuilloServer

#endif
