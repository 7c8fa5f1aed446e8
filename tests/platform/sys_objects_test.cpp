// The objects of kind "sys": over files of a test's own, and over this machine.
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/statvfs.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"
#include "temp_folder.hpp"

using namespace QuilloHost;

namespace {

class SysObjectsTest : public ::testing::Test {
protected:
    ~SysObjectsTest() override { MachineRoots() = Roots(); }

    // From now on the objects are read from the test's folder.
    void UseFolder() { MachineRoots() = {folder.path + "/proc", folder.path + "/sys"}; }

    // The value of the record's column of that name.
    static Value In(Table const& table, std::size_t record, std::string const& column) {
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            if (table.columns[i] == column) {
                return table.records.at(record).at(i);
            }
        }
        return std::string("no column " + column);
    }

    // The number of the record whose column holds the value.
    static std::size_t Find(Table const& table, std::string const& column,
                            std::string const& value) {
        for (std::size_t i = 0; i < table.records.size(); ++i) {
            if (In(table, i, column) == Value(value)) {
                return i;
            }
        }
        ADD_FAILURE() << "no record with " << column << " " << value;
        return 0;
    }

    static std::string Stat(std::string const& name, int pages, int threads) {
        return "1 (" + name + ") S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 " +
               std::to_string(threads) + " 18 19 20 " + std::to_string(pages) + " 22\n";
    }

    TempFolder folder;
};

TEST_F(SysObjectsTest, HostIsReadFromTheSystemsFiles) {
    folder.Write("proc/uptime", "93784.12 180000.00\n");
    folder.Write("proc/loadavg", "0.15 0.10 0.05 1/234 5678\n");
    folder.Write("proc/1/stat", "");
    folder.Write("proc/22/stat", "");
    folder.Write("proc/self/stat", "");
    folder.Write("proc/3x/stat", "");
    UseFolder();
    Table const table = ReadHost().value();
    EXPECT_EQ(table.records.size(), 1U);
    EXPECT_EQ(In(table, 0, "uptime"), Value("93784"));
    EXPECT_EQ(In(table, 0, "load1"), Value("0.15"));
    EXPECT_EQ(In(table, 0, "load5"), Value("0.10"));
    EXPECT_EQ(In(table, 0, "load15"), Value("0.05"));
    EXPECT_EQ(In(table, 0, "processes"), Value("2"));
}

TEST_F(SysObjectsTest, WhatCannotBeReadOfTheHostHasNoValue) {
    UseFolder();
    Table const table = ReadHost().value();
    for (char const* const column : {"uptime", "load1", "load5", "load15", "processes"}) {
        EXPECT_FALSE(In(table, 0, column).has_value()) << column;
    }
    EXPECT_TRUE(In(table, 0, "kernel").has_value());
}

TEST_F(SysObjectsTest, TheHostIsThisMachine) {
    struct utsname names {};
    uname(&names);
    Table const table = ReadHost().value();
    EXPECT_EQ(In(table, 0, "hostname"), Value(names.nodename));
    EXPECT_EQ(In(table, 0, "kernel"), Value(names.release));
    EXPECT_EQ(In(table, 0, "architecture"), Value(names.machine));
    struct sysinfo info {};
    sysinfo(&info);
    long const uptime = std::stol(In(table, 0, "uptime").value());
    EXPECT_LE(uptime, info.uptime + 1);
    EXPECT_GE(uptime, info.uptime - 60);
}

TEST_F(SysObjectsTest, MemoryIsInBytes) {
    folder.Write("proc/meminfo",
                 "MemTotal:       1000 kB\nMemFree: 1 kB\nMemAvailable: 500 kB\n"
                 "SwapTotal: x kB\nHugePages_Total: 0\n");
    UseFolder();
    Table const table = ReadMemory().value();
    EXPECT_EQ(In(table, 0, "total"), Value("1024000"));
    EXPECT_EQ(In(table, 0, "available"), Value("512000"));
    EXPECT_FALSE(In(table, 0, "swap_total").has_value()) << "is no number";
    EXPECT_FALSE(In(table, 0, "swap_free").has_value()) << "is not there";
}

TEST_F(SysObjectsTest, AnObjectWithoutItsFileCannotBeHadAndTheLogSaysWhy) {
    UseFolder();
    ::testing::internal::CaptureStderr();
    EXPECT_FALSE(ReadMemory().has_value());
    EXPECT_FALSE(ReadStorage().has_value());
    EXPECT_FALSE(ReadProcesses().has_value());
    std::string const log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("memory: " + folder.path + "/proc/meminfo cannot be read"),
              std::string::npos);
    EXPECT_NE(log.find("storage: "), std::string::npos);
    EXPECT_NE(log.find("processes: "), std::string::npos);
}

TEST_F(SysObjectsTest, TheMemoryIsThisMachines) {
    struct sysinfo info {};
    sysinfo(&info);
    std::uint64_t const total = std::stoull(In(ReadMemory().value(), 0, "total").value());
    std::uint64_t const expected = std::uint64_t{info.totalram} * info.mem_unit;
    EXPECT_EQ(total / 1024, expected / 1024);
}

TEST_F(SysObjectsTest, ProcessesStandByTheirMemoryAndThenByTheirNumber) {
    folder.Write("proc/1/stat", Stat("init", 10, 1));
    folder.Write("proc/2/stat", Stat("a (b) c\nd", 30, 4));
    folder.Write("proc/10/stat", Stat("x", 10, 2));
    folder.Write("proc/3/stat", "3 (cut short) S 1");
    folder.Write("proc/4/stat", "nonsense");
    std::filesystem::create_directories(folder.path + "/proc/5");
    UseFolder();
    Table const table = ReadProcesses().value();
    ASSERT_EQ(table.records.size(), 3U);
    EXPECT_EQ(In(table, 0, "pid"), Value("2"));
    EXPECT_EQ(In(table, 0, "name"), Value("a (b) c\nd"));
    EXPECT_EQ(In(table, 0, "state"), Value("S"));
    EXPECT_EQ(In(table, 0, "threads"), Value("4"));
    EXPECT_EQ(In(table, 0, "rss_bytes"), Value(std::to_string(30 * sysconf(_SC_PAGESIZE))));
    EXPECT_EQ(In(table, 1, "pid"), Value("1"));
    EXPECT_EQ(In(table, 2, "pid"), Value("10"));
}

TEST_F(SysObjectsTest, ThisProcessIsAmongTheProcesses) {
    Table const table = ReadProcesses().value();
    std::size_t const own = Find(table, "pid", std::to_string(getpid()));
    EXPECT_EQ(In(table, own, "state"), Value("R"));
    EXPECT_GT(std::stoull(In(table, own, "rss_bytes").value()), 100000U);
}

TEST_F(SysObjectsTest, MountsAreReadWithTheirEscapesAndCoveredOnesLeftOut) {
    std::string const here = folder.path + "/a b";
    std::filesystem::create_directories(here);
    std::string escaped = folder.path + "/a\\040b";
    folder.Write("proc/self/mountinfo",
                 "1 0 8:1 / " + escaped + " rw,noatime shared:1 master:2 - ext3 /dev/old rw\n" +
                     "2 0 8:2 / " + escaped + " rw - ext4 /dev/sd\\134a rw\n" +
                     "3 0 8:2 /sub / rw - ext4 /dev/again rw\n" +
                     "4 0 0:5 / /proc rw - proc proc rw\n" +
                     "5 0 0:6 / /dev rw - devtmpfs udev rw\n" +
                     "6 0 0:7 / /does/not/exist rw - nfs server:/x rw\n" + "nonsense\n");
    UseFolder();
    Table const table = ReadStorage().value();
    ASSERT_EQ(table.records.size(), 2U);
    EXPECT_EQ(In(table, 0, "mount"), Value(here));
    EXPECT_EQ(In(table, 0, "device"), Value("/dev/sd\\a"));
    EXPECT_EQ(In(table, 0, "type"), Value("ext4"));
    struct statvfs figures {};
    ASSERT_EQ(statvfs(here.c_str(), &figures), 0);
    EXPECT_EQ(In(table, 0, "size"),
              Value(std::to_string(std::uint64_t{figures.f_blocks} * figures.f_frsize)));
    EXPECT_EQ(In(table, 1, "mount"), Value("/does/not/exist"));
    EXPECT_FALSE(In(table, 1, "size").has_value()) << "one that does not answer has no figures";
}

TEST_F(SysObjectsTest, UsedAndAvailableAddUpToNoMoreThanTheSize) {
    Table const table = ReadStorage().value();
    std::size_t const root = Find(table, "mount", "/");
    EXPECT_LE(std::stoull(In(table, root, "used").value()) +
                  std::stoull(In(table, root, "available").value()),
              std::stoull(In(table, root, "size").value()));
}

TEST_F(SysObjectsTest, EveryInterfaceIsARecordInTheKernelsOrder) {
    Table const table = ReadInterfaces().value();
    struct if_nameindex* const names = if_nameindex();
    std::vector<std::string> expected;
    for (struct if_nameindex* name = names; name->if_index != 0; ++name) {
        expected.emplace_back(name->if_name);
    }
    if_freenameindex(names);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < table.records.size(); ++i) {
        found.push_back(In(table, i, "name").value());
    }
    EXPECT_EQ(found, expected);
    std::size_t const loopback = Find(table, "name", "lo");
    EXPECT_EQ(In(table, loopback, "ipv4"), Value("127.0.0.1/8"));
    EXPECT_EQ(In(table, loopback, "mac"), Value(""));
}

TEST_F(SysObjectsTest, StateCountersAndMtuComeFromSys) {
    folder.Write("sys/class/net/lo/ifindex", std::to_string(if_nametoindex("lo")) + "\n");
    folder.Write("sys/class/net/lo/operstate", "dormant\n");
    folder.Write("sys/class/net/lo/mtu", "1234\n");
    folder.Write("sys/class/net/lo/statistics/rx_bytes", "5\n");
    folder.Write("sys/class/net/lo/statistics/tx_bytes", "6\n");
    UseFolder();
    Table const table = ReadInterfaces().value();
    std::size_t const loopback = Find(table, "name", "lo");
    EXPECT_EQ(In(table, loopback, "state"), Value("dormant"));
    EXPECT_EQ(In(table, loopback, "mtu"), Value("1234"));
    EXPECT_EQ(In(table, loopback, "rx_bytes"), Value("5"));
    EXPECT_EQ(In(table, loopback, "tx_bytes"), Value("6"));
}

TEST_F(SysObjectsTest, AFolderOfAnotherInterfaceOfThatNameIsNotRead) {
    folder.Write("sys/class/net/lo/ifindex", std::to_string(if_nametoindex("lo") + 1000) + "\n");
    folder.Write("sys/class/net/lo/mtu", "1234\n");
    UseFolder();
    Table const table = ReadInterfaces().value();
    EXPECT_FALSE(In(table, Find(table, "name", "lo"), "mtu").has_value());
}

TEST_F(SysObjectsTest, WithoutSysTheFlagsTellTheStateAndTheMtuCannotBeHad) {
    UseFolder();
    Table const table = ReadInterfaces().value();
    std::size_t const loopback = Find(table, "name", "lo");
    Value const state = In(table, loopback, "state");
    EXPECT_TRUE(state == Value("up") || state == Value("down"));
    EXPECT_TRUE(In(table, loopback, "rx_bytes").has_value());
    EXPECT_FALSE(In(table, loopback, "mtu").has_value());
}

TEST(TextFile, AFileIsReadWholeOrNotAtAll) {
    TempFolder const folder;
    folder.Write("text", std::string(10000, 'x') + "\nrest");
    folder.Write("empty", "");
    EXPECT_EQ(ReadText(folder.path + "/text").value().size(), 10005U);
    EXPECT_EQ(ReadFirstLine(folder.path + "/text").value().size(), 10000U);
    EXPECT_EQ(ReadText(folder.path + "/empty").value(), "");
    EXPECT_FALSE(ReadText(folder.path + "/missing").has_value());
    EXPECT_FALSE(ReadText(folder.path).has_value()) << "a folder is no file";
}

TEST(TextFile, WordsAndLines) {
    EXPECT_EQ(Words(" a \t b"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(Words(""), std::vector<std::string>());
    EXPECT_EQ(Lines("a\n\nb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(Lines("a\n"), (std::vector<std::string>{"a"}));
}

}  // namespace
