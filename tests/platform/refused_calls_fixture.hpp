// A test in which the system refuses calls: it leaves no descriptor open.
#ifndef QUILLO_TESTS_PLATFORM_REFUSED_CALLS_FIXTURE_HPP
#define QUILLO_TESTS_PLATFORM_REFUSED_CALLS_FIXTURE_HPP

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <string>

#include "device/open_descriptors.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/refused_calls.hpp"

class RefusedCallsTest : public testing::Test {
protected:
    RefusedCallsTest() : before(OpenDescriptors()) {}
    void TearDown() override { EXPECT_EQ(OpenedSince(before), std::set<int>()); }

    // Whether the log names the reason.
    static void ExpectReason(CapturedStderr const& log, int error) {
        EXPECT_NE(log.Text().find(std::strerror(error)), std::string::npos) << log.Text();
    }

    // Refuses this call alone.
    void Refuse(char const* name, RefusedCalls::Refusal const& refusal) {
        calls.refusals = {{name, refusal}};
        calls.hasFailed = false;
    }

    // Has `check` done with the first call of `name` refused, with the second and so on, up to a
    // run that makes no more of them: each once, and from there on. `check` is told which calls
    // fail, of `isRefused(0)` and so on. Returns how many there are.
    int RefuseEach(char const* name, int error,
                   std::function<void(std::function<bool(int)> const& isRefused)> const& check) {
        int most = 0;
        for (bool const isOnce : {true, false}) {
            int allowed = 0;
            do {
                SCOPED_TRACE(std::string(name) + " " + std::to_string(allowed) +
                             (isOnce ? ": " : " and all behind it: ") + std::strerror(error));
                Refuse(name, {error, allowed, isOnce});
                check([=](int call) { return isOnce ? call == allowed : call >= allowed; });
                ++allowed;
            } while (calls.hasFailed);
            most = std::max(most, allowed - 1);
        }
        calls.refusals.clear();
        return most;
    }

    std::set<int> const before;
    RefusedCalls calls;
};

#endif
