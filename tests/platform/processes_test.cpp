#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "host/sys/sys_objects.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"

namespace {

using QuilloHost::ReadProcesses;

// Numbers no two fields alike: field n is 100 + n, but for state, threads and pages.
std::string Stat(std::string const& name, char state, int threads, std::string const& pages) {
    std::string text = "1 (" + name + ") " + state;
    for (int field = 4; field <= 52; ++field) {
        text += ' ' + (field == 20   ? std::to_string(threads)
                       : field == 24 ? pages
                                     : std::to_string(100 + field));
    }
    return text + '\n';
}

std::string Bytes(unsigned pages) {
    return std::to_string(pages * static_cast<unsigned>(sysconf(_SC_PAGESIZE)));
}

TEST(Processes, AreSortedByMemoryAndThenById) {
    FixtureMachine machine;
    machine.Write("proc/9/stat", Stat("nine", 'S', 1, "5"));
    machine.Write("proc/10/stat", Stat("ten", 'R', 12, "5"));
    machine.Write("proc/2/stat", Stat("two", 'Z', 1, "0"));
    machine.Write("proc/700/stat", Stat("large", 'D', 3, "123456"));
    EXPECT_EQ(Shown(ReadProcesses()), "700|large|D|" + Bytes(123456) + "|3\n" + "9|nine|S|" +
                                          Bytes(5) + "|1\n" + "10|ten|R|" + Bytes(5) + "|12\n" +
                                          "2|two|Z|0|1\n");
}

TEST(Processes, MayHaveAnyName) {
    for (std::string const name : {"a b", "(a)", "a) S 1 (b", "a\nb", ")", "(", "", ") ", "\t"}) {
        FixtureMachine machine;
        machine.Write("proc/5/stat", Stat(name, 'S', 1, "1"));
        EXPECT_EQ(Shown(ReadProcesses()), "5|" + name + "|S|" + Bytes(1) + "|1\n") << name;
    }
}

TEST(Processes, UseNothingThatCanBeToldWhenTheirPagesAreNoNumberThatFits) {
    // In pages of 4 KiB, and in any larger ones, the second has more bytes than 64 bits can count.
    for (char const* pages : {"x", "4503599627370497", "18446744073709551616"}) {
        FixtureMachine machine;
        machine.Write("proc/5/stat", Stat("large", 'S', 1, pages));
        EXPECT_EQ(Shown(ReadProcesses()), "5|large|S|0|1\n") << pages;
    }
}

TEST(Processes, AreLeftOutWhenTheyEndWhileTheyAreRead) {
    FixtureMachine machine;
    machine.Write("proc/5/other", "");
    machine.Write("proc/6/stat", "");
    machine.Write("proc/7/stat", "7 (cut");
    machine.Write("proc/8/stat", "8 cut) (S 1 2");
    machine.Write("proc/9/stat", "9 (cut) S 1 2 3");
    machine.Write("proc/self/stat", Stat("self", 'S', 1, "1"));
    machine.Write("proc/11/stat/a folder", "");
    machine.Write("proc/12/stat", Stat("whole", 'S', 1, "1"));
    EXPECT_EQ(Shown(ReadProcesses()), "12|whole|S|" + Bytes(1) + "|1\n");
}

TEST(Processes, AreNotThereWithoutTheirFolder) {
    FixtureMachine machine;
    machine.Remove("proc");
    CapturedStderr const captured;
    EXPECT_EQ(Shown(ReadProcesses()), "no table\n");
    EXPECT_NE(captured.Text().find("processes: " + machine.Folder() + "/proc cannot be read\n"),
              std::string::npos)
        << captured.Text();
}

TEST(Processes, ShowThisOne) {
    auto const table = *ReadProcesses();
    std::string const pid = std::to_string(getpid());
    std::string name;
    std::getline(std::ifstream("/proc/self/comm"), name);
    EXPECT_EQ(ValueIn(table, "pid", pid, "name"), name);
    EXPECT_EQ(ValueIn(table, "pid", pid, "state"), "R");
    EXPECT_GT(std::stoull(ValueIn(table, "pid", pid, "rss_bytes")), 0U);
    EXPECT_GE(std::stoull(ValueIn(table, "pid", pid, "threads")), 1U);
}

}  // namespace
