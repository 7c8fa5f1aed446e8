#include "host/query_timer.hpp"

#include "host/host.hpp"

namespace QuilloHost {

namespace {

QueryWatch watch = nullptr;

}  // namespace

void SetQueryWatch(QueryWatch newWatch) noexcept {
    watch = newWatch;
}

QueryTimer::~QueryTimer() {
    if (watch != nullptr) {
        watch(object_, std::chrono::steady_clock::now() - begin_);
    }
}

}  // namespace QuilloHost
