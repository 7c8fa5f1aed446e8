#include "host/sys/space_probe.hpp"

#include <pthread.h>
#include <sys/statvfs.h>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <new>
#include <set>
#include <system_error>
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

// What a thread tells to one that may have stopped waiting. Not a std::promise: one that is given
// up takes memory to say so, and ends the process when there is none.
class Answer {
public:
    void Tell(std::optional<Space> const& space) noexcept {
        std::lock_guard<std::mutex> const lock(mutex_);
        space_ = space;
        isTold_ = true;
        told_.notify_one();
    }
    std::optional<Space> Wait(std::chrono::milliseconds patience) {
        std::unique_lock<std::mutex> lock(mutex_);
        told_.wait_for(lock, patience, [this] { return isTold_; });
        return space_;
    }

private:
    std::mutex mutex_;
    std::condition_variable told_;
    bool isTold_ = false;
    std::optional<Space> space_;
};

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
    auto const answer = std::make_shared<Answer>();
    auto run = [ask = ask_, place, asked = asked_, answer] {
        BlockSignals();
        std::optional<Space> const space = ask(place);
        asked->Leave(place);
        answer->Tell(space);
    };
    if (!asked_->Enter(place)) {
        return std::nullopt;
    }
    try {
        std::thread(std::move(run)).detach();
    } catch (std::system_error const&) {  // no thread to be had
        asked_->Leave(place);
        return std::nullopt;
    } catch (std::bad_alloc const&) {
        asked_->Leave(place);
        throw;
    }
    return answer->Wait(patience_);
}

}  // namespace QuilloHost
