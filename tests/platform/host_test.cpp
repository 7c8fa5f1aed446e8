#include <gtest/gtest.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>

#include <regex>
#include <string>

#include "host/sys/sys_objects.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"

namespace {

using QuilloHost::ReadHost;

// The values behind the three names, which are always the machine's own.
std::string Measured() {
    auto table = ReadHost();
    EXPECT_EQ(table->records.size(), 1U);
    auto& record = table->records.at(0);
    record.erase(record.begin(), record.begin() + 3);
    return Shown(table);
}

TEST(Host, ReadsUptimeLoadAndProcessCount) {
    FixtureMachine machine;
    machine.Write("proc/uptime", "93784.99 180000.00\n");
    machine.Write("proc/loadavg", "0.15 10.10 0.05 1/234 5678\n");
    for (char const* name : {"1", "42", "4711", "self", "42x", "x42"}) {
        machine.Write(std::string("proc/") + name + "/stat", "");
    }
    EXPECT_EQ(Measured(), "93784|0.15|10.10|0.05|3\n");
}

TEST(Host, CannotHaveWhatItsFilesDoNotTell) {
    FixtureMachine machine;
    EXPECT_EQ(Measured(), "~|~|~|~|0\n");
    machine.Write("proc/uptime", "");
    machine.Write("proc/loadavg", "0.15 0.10\n");
    EXPECT_EQ(Measured(), "~|~|~|~|0\n");
    machine.Remove("proc");
    EXPECT_EQ(Measured(), "~|~|~|~|~\n");
}

TEST(Host, ShowsTheRunningMachine) {
    utsname names{};
    ASSERT_EQ(uname(&names), 0);
    struct sysinfo before {};
    struct sysinfo after {};
    ASSERT_EQ(sysinfo(&before), 0);
    auto const table = *ReadHost();
    ASSERT_EQ(sysinfo(&after), 0);
    std::string const name = names.nodename;
    EXPECT_EQ(ValueIn(table, "hostname", name, "kernel"), names.release);
    EXPECT_EQ(ValueIn(table, "hostname", name, "architecture"), names.machine);
    long const uptime = std::stol(ValueIn(table, "hostname", name, "uptime"));
    EXPECT_GE(uptime, before.uptime - 1);  // sysinfo rounds up
    EXPECT_LE(uptime, after.uptime);
    EXPECT_GE(std::stol(ValueIn(table, "hostname", name, "processes")), 1);
    for (char const* load : {"load1", "load5", "load15"}) {
        EXPECT_TRUE(
            std::regex_match(ValueIn(table, "hostname", name, load), std::regex(R"(\d+\.\d\d)")));
    }
}

}  // namespace
