#include "host/sys/space_probe.hpp"

#include <pthread.h>
#include <sys/statvfs.h>

#include <csignal>
#include <exception>
#include <future>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

namespace QuilloHost {

// The places that are being asked.
class SpaceProbe::Places {
public:
    // False when `place` was in already.
    bool Enter(std::string const& place) {
        std::lock_guard<std::mutex> const lock(mutex_);
        return places_.insert(place).second;
    }
    void Leave(std::string const& place) {
        std::lock_guard<std::mutex> const lock(mutex_);
        places_.erase(place);
    }

private:
    std::mutex mutex_;
    std::set<std::string> places_;
};

namespace {

// Signals to the process are for its other threads.
void BlockSignals() noexcept {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

}  // namespace

std::optional<Space> AskFileSystem(std::string const& place) noexcept {
    struct statvfs figures {};
    if (statvfs(place.c_str(), &figures) != 0) {
        return std::nullopt;
    }
    std::uint64_t const unit = figures.f_frsize;
    return Space{figures.f_blocks * unit, (figures.f_blocks - figures.f_bfree) * unit,
                 figures.f_bavail * unit};
}

SpaceProbe::SpaceProbe(Ask ask, std::chrono::milliseconds patience)
    : ask_(ask), patience_(patience), asked_(std::make_shared<Places>()) {}

std::optional<Space> SpaceProbe::SpaceAt(std::string const& place) {
    std::promise<std::optional<Space>> promise;
    std::future<std::optional<Space>> answer = promise.get_future();
    auto run = [ask = ask_, place, asked = asked_, told = std::move(promise)]() mutable {
        BlockSignals();
        std::optional<Space> const space = ask(place);
        asked->Leave(place);
        told.set_value(space);
    };
    if (!asked_->Enter(place)) {
        return std::nullopt;
    }
    try {
        std::thread(std::move(run)).detach();
    } catch (std::exception const&) {  // no thread to be had
        asked_->Leave(place);
        return std::nullopt;
    }
    bool const isTold = answer.wait_for(patience_) == std::future_status::ready;
    return isTold ? answer.get() : std::nullopt;
}

}  // namespace QuilloHost
