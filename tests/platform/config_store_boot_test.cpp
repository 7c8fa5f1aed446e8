// The configuration store of a program that names no run: a running value holds for a boot.
#include <gtest/gtest.h>

#include "host/contract.hpp"
#include "host/host.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "temp_folder.hpp"

namespace {

TEST(ConfigStoreBoot, EndsARunningValueAndIsNeeded) {
    TempFolder const folder;
    QuilloHost::SetStateFolder(folder.path);
    QuilloHost::DeclareSetting("x", "0");
    FixtureMachine const machine;
    machine.Write("proc/sys/kernel/random/boot_id", "first\n");
    int value = -1;
    EXPECT_EQ(Cfg_SetAttrValue("x", "1"), 0);
    EXPECT_EQ(Cfg_GetBoolAttrValue("x", &value), 0);
    EXPECT_EQ(value, 1);
    machine.Write("proc/sys/kernel/random/boot_id", "second\n");
    EXPECT_EQ(Cfg_GetBoolAttrValue("x", &value), 0);
    EXPECT_EQ(value, 0);

    machine.Remove("proc/sys/kernel/random/boot_id");
    CapturedStderr const captured;
    EXPECT_NE(Cfg_SetAttrValue("x", "1"), 0);
    EXPECT_NE(captured.Text().find("setting \"x\": " + machine.Folder() +
                                   "/proc/sys/kernel/random/boot_id cannot be read"),
              std::string::npos)
        << captured.Text();
    EXPECT_NE(captured.Text().find(": mount /proc\n"), std::string::npos) << captured.Text();
}

}  // namespace
