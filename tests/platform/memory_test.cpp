#include <gtest/gtest.h>
#include <sys/sysinfo.h>

#include <string>

#include "host/sys/sys_objects.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"

namespace {

using QuilloHost::ReadMemory;

TEST(Memory, IsInBytes) {
    FixtureMachine machine;
    machine.Write("proc/meminfo",
                  "MemTotal:       24684096 kB\n"
                  "MemFree:              17 kB\n"
                  "MemAvailable:   24352012 kB\n"
                  "SwapTotal:             2 kB\n"
                  "SwapFree:              0 kB\n"
                  "HugePages_Total:       0\n");
    EXPECT_EQ(Shown(ReadMemory()), "25276514304|24936460288|2048|0\n");
}

TEST(Memory, CannotHaveWhatTheFileDoesNotTell) {
    FixtureMachine machine;
    machine.Write("proc/meminfo",
                  "XMemTotal: 1 kB\n"
                  "MemAvailable: many kB\n"
                  "SwapTotal: 12x kB\n"
                  "SwapFree: 3\n"
                  "\n");
    EXPECT_EQ(Shown(ReadMemory()), "~|~|~|~\n");
    machine.Write("proc/meminfo", "");
    EXPECT_EQ(Shown(ReadMemory()), "~|~|~|~\n");
}

TEST(Memory, CannotBeHadInBytesThatAreMoreThanFit) {
    FixtureMachine machine;
    machine.Write("proc/meminfo",
                  "MemTotal: 18014398509481983 kB\n"
                  "MemAvailable: 18014398509481984 kB\n"
                  "SwapTotal: 18446744073709551615 kB\n"
                  "SwapFree: 18446744073709551616 kB\n");
    EXPECT_EQ(Shown(ReadMemory()), "18446744073709550592|~|~|~\n");
}

TEST(Memory, IsNotThereWithoutItsFile) {
    FixtureMachine machine;
    CapturedStderr const captured;
    EXPECT_EQ(Shown(ReadMemory()), "no table\n");
    EXPECT_NE(
        captured.Text().find("memory: " + machine.Folder() + "/proc/meminfo cannot be read\n"),
        std::string::npos)
        << captured.Text();
}

TEST(Memory, ShowsTheRunningMachine) {
    struct sysinfo status {};
    ASSERT_EQ(sysinfo(&status), 0);
    auto const table = *ReadMemory();
    std::string const total = std::to_string(std::uint64_t{status.totalram} * status.mem_unit);
    EXPECT_EQ(table.records.at(0).at(0), total);
    EXPECT_GT(std::stoull(ValueIn(table, "total", total, "available")), 0U);
    EXPECT_EQ(ValueIn(table, "total", total, "swap_total"),
              std::to_string(std::uint64_t{status.totalswap} * status.mem_unit));
}

}  // namespace
