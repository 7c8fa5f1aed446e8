#include "query_times.hpp"

#include <host/host.hpp>
#include <string_view>

namespace QuilloServer {
namespace {

QueryTimes times;

void Count(char const* object, std::chrono::nanoseconds taken) noexcept {
    times.Add(object, taken);
}

}  // namespace

void QueryTimes::Add(char const* asked, std::chrono::nanoseconds taken) noexcept {
    all += taken;
    if (object[0] == '\0' || taken > longest) {
        longest = taken;
        object[std::string_view(asked).copy(object, sizeof object - 1)] = '\0';
    }
}

void BeginQueryTimes() noexcept {
    times = QueryTimes();
    QuilloHost::SetQueryWatch(Count);
}

QueryTimes const& CountedQueryTimes() noexcept {
    return times;
}

}  // namespace QuilloServer
