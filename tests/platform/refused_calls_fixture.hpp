// A test in which the system refuses calls: it leaves no descriptor open.
#ifndef QUILLO_TESTS_PLATFORM_REFUSED_CALLS_FIXTURE_HPP
#define QUILLO_TESTS_PLATFORM_REFUSED_CALLS_FIXTURE_HPP

#include <gtest/gtest.h>

#include <cstring>
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

    std::set<int> const before;
    RefusedCalls calls;
};

#endif
