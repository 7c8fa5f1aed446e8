#include "host/sys/space_probe.hpp"

#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <string>

#include "platform/system_calls.hpp"

namespace {

using QuilloHost::AskFileSystem;
using QuilloHost::Space;
using QuilloHost::SpaceProbe;

constexpr std::chrono::hours forEver{1};
constexpr std::chrono::milliseconds notAtAll{0};

// A file system that does not tell until it is let go.
struct Hanging {
    std::promise<void> release;
    std::shared_future<void> released{release.get_future()};
    std::promise<void> back;
    std::atomic<int> asked{0};
};

Hanging* hanging = nullptr;

std::optional<Space> Hang(std::string const&) noexcept {
    ++hanging->asked;
    hanging->released.wait();
    hanging->back.set_value();
    return Space{3, 2, 1};
}

std::optional<Space> Tell(std::string const& place) noexcept {
    return place == "/silent" ? std::nullopt : std::optional<Space>(Space{place.size(), 2, 1});
}

TEST(SpaceProbe, GivesWhatTheFileSystemTells) {
    SpaceProbe probe(Tell, forEver);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(probe.SpaceAt("/four").value().size, 5U);
        EXPECT_FALSE(probe.SpaceAt("/silent").has_value());
    }
}

TEST(SpaceProbe, GivesUpAFileSystemThatHangsAndAsksItNoMore) {
    Hanging hang;
    hanging = &hang;
    SpaceProbe probe(Hang, notAtAll);
    EXPECT_FALSE(probe.SpaceAt("/a").has_value());
    EXPECT_FALSE(probe.SpaceAt("/a").has_value());
    hang.release.set_value();
    hang.back.get_future().wait();
    EXPECT_EQ(hang.asked, 1);
}

std::optional<Space> TellBlockedSignals(std::string const&) noexcept {
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return Space{sigismember(&blocked, SIGTERM) == 1 ? 1U : 0U, 0, 0};
}

TEST(SpaceProbe, LeavesSignalsToOtherThreads) {
    EXPECT_EQ(SpaceProbe(TellBlockedSignals, forEver).SpaceAt("/").value().size, 1U);
}

TEST(AskFileSystem, CountsInBytes) {
    ChangedSystemCalls calls;
    SystemCalls::Now().statvfs = [](std::string const&, struct statvfs& figures) {
        figures.f_bsize = 1;
        figures.f_frsize = 4096;
        figures.f_blocks = 5000000;
        figures.f_bfree = 2000000;
        figures.f_bavail = 1000000;
        return 0;
    };
    Space const space = AskFileSystem("/").value();
    EXPECT_EQ(space.size, 20480000000U);
    EXPECT_EQ(space.used, 12288000000U);
    EXPECT_EQ(space.available, 4096000000U);
}

TEST(AskFileSystem, TellsNothingOfAPlaceThatIsNotThere) {
    EXPECT_FALSE(AskFileSystem("/no/such/place").has_value());
}

}  // namespace
