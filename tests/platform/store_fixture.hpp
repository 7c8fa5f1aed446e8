// A configuration store in a folder of the test's own, with the settings x, FALSE, and y, TRUE.
#ifndef QUILLO_TESTS_PLATFORM_STORE_FIXTURE_HPP
#define QUILLO_TESTS_PLATFORM_STORE_FIXTURE_HPP

#include <config_store.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "host/host.hpp"
#include "platform/captured_stderr.hpp"
#include "temp_folder.hpp"

class StoreFixture : public ::testing::Test {
protected:
    StoreFixture() {
        QuilloHost::SetStateFolder(State());
        QuilloHost::SetServiceRun("first run");
        QuilloHost::SetStorePatience(0);
        QuilloHost::DeclareSetting("x", "FALSE");
        QuilloHost::DeclareSetting("y", "TRUE");
    }

    static int Read(char const* name) {
        int value = -4711;
        EXPECT_EQ(Cfg_GetBoolAttrValue(name, &value), 0) << name;
        return value;
    }

    // The running value of x, and the one that a restart would bring: "1 0".
    static std::string Values() {
        std::string const running = std::to_string(Read("x"));
        QuilloHost::SetServiceRun("another run");
        std::string const stored = std::to_string(Read("x"));
        QuilloHost::SetServiceRun("first run");
        return running + " " + stored;
    }

    // The log of `work`.
    static std::string Log(std::function<void()> const& work) {
        CapturedStderr const captured;
        work();
        return captured.Text();
    }

    std::string State() const { return folder.path + "/state"; }
    std::string File() const { return State() + "/configuration.db"; }

    TempFolder folder;
};

#endif
