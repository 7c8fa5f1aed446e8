// The objects of the host when the system refuses a call: with every error that the call can give,
// and each call by itself. What could be read is told, and what could not cannot be had.
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/sys/process_ids.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/space_probe.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/refused_calls_fixture.hpp"
#include "platform/shown_table.hpp"

using namespace QuilloHost;

namespace {

int const openErrors[] = {EACCES, EINTR,  EIO,    ELOOP,   EMFILE, ENAMETOOLONG,
                          ENFILE, ENOENT, ENOMEM, ENOTDIR, ENXIO,  EOVERFLOW};
int const readErrors[] = {EAGAIN, EBADF, EINTR, EIO, EISDIR, ESRCH};
int const openFolderErrors[] = {EACCES, EMFILE, ENFILE, ENOENT, ENOMEM, ENOTDIR};
int const readFolderErrors[] = {EBADF, EIO, ENOENT, EOVERFLOW};

class RefusedObjectsTest : public RefusedCallsTest {
protected:
    // What the object shows, and that it says so when it is not there.
    std::string Show(std::optional<Table> (*read)(), std::string const& object) {
        CapturedStderr const captured;
        std::string const shown = Shown(read());
        EXPECT_EQ(captured.Text().find(object + ": ") != std::string::npos, shown == "no table\n")
            << captured.Text();
        return shown;
    }

    // Its only file is refused each time: there is no object rather than a part of it.
    void ExpectNoneWithoutItsFile(std::optional<Table> (*read)(), std::string const& object,
                                  std::size_t size) {
        std::string const whole = Show(read, object);
        EXPECT_NE(whole, "no table\n");
        auto const check = [&](auto const& isRefused) {
            EXPECT_EQ(Show(read, object), isRefused(0) ? "no table\n" : whole);
        };
        for (int error : openErrors) {
            EXPECT_EQ(RefuseEach("fopen", error, check), 1);
        }
        for (int error : readErrors) {
            for (std::size_t bytes : {std::size_t{0}, std::size_t{1}, size - 1, size}) {
                calls.bytes = bytes;
                EXPECT_EQ(RefuseEach("fread", error, check), 1);
            }
        }
    }

    FixtureMachine machine;
};

TEST_F(RefusedObjectsTest, AFileThatIsNotOpenedHasNoText) {
    machine.Write("proc/file", "text\n");
    std::string const file = machine.Folder() + "/proc/file";
    for (int error : openErrors) {
        Refuse("fopen", {error});
        EXPECT_FALSE(ReadText(file).has_value()) << error;
        EXPECT_FALSE(ReadFirstLine(file).has_value()) << error;
    }
    calls.refusals.clear();
    EXPECT_EQ(ReadText(file), "text\n");
}

TEST_F(RefusedObjectsTest, AFileThatBreaksOffHasNoText) {
    std::string const text(10000, 'x');
    machine.Write("proc/file", text);
    std::string const file = machine.Folder() + "/proc/file";
    for (int error : readErrors) {
        for (std::size_t bytes : {0U, 1U, 4095U, 4096U, 4097U, 9000U, 10000U}) {
            calls.bytes = bytes;
            Refuse("fread", {error});
            EXPECT_FALSE(ReadText(file).has_value()) << error << " " << bytes;
        }
    }
    calls.refusals.clear();
    EXPECT_EQ(ReadText(file), text);
}

class RefusedProcessesTest : public RefusedObjectsTest {
protected:
    RefusedProcessesTest() {
        for (char const* pid : {"7", "8", "9"}) {
            machine.Write(
                std::string("proc/") + pid + "/stat",
                pid + std::string(" (x) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 3 0 5 6 0 8"));
        }
    }

    // Those of the three that are left, when a file of each is read.
    static std::string Left(std::function<bool(int)> const& isRefused) {
        std::string shown;
        for (int i = 0; i < 3; ++i) {
            shown += isRefused(i) ? "" : std::to_string(7 + i) + "|x|S|0|3\n";
        }
        return shown;
    }
};

TEST_F(RefusedProcessesTest, AProcessThatIsNotReadIsLeftOutAndTheOthersAreNot) {
    auto const check = [&](auto const& isRefused) {
        EXPECT_EQ(Show(ReadProcesses, "processes"), Left(isRefused));
    };
    for (int error : openErrors) {
        EXPECT_EQ(RefuseEach("fopen", error, check), 3);
    }
    std::size_t const size = std::filesystem::file_size(machine.Folder() + "/proc/7/stat");
    for (int error : readErrors) {
        for (std::size_t bytes : {std::size_t{0}, std::size_t{1}, size - 1, size}) {
            calls.bytes = bytes;
            EXPECT_EQ(RefuseEach("fread", error, check), 3);
        }
    }
}

TEST_F(RefusedProcessesTest, AFolderThatIsNotReadToItsEndHasNoProcessesRatherThanSome) {
    auto const check = [&](auto const&) {
        std::string const shown = Show(ReadProcesses, "processes");
        EXPECT_EQ(shown, calls.hasFailed ? "no table\n" : Left([](int) { return false; }));
    };
    auto const checkIds = [&](auto const&) {
        std::optional<std::vector<int>> const ids = ReadProcessIds();
        EXPECT_EQ(ids.has_value(), !calls.hasFailed);
        EXPECT_EQ(ids.value_or(std::vector<int>{7, 8, 9}), (std::vector<int>{7, 8, 9}));
    };
    for (int error : openFolderErrors) {
        EXPECT_EQ(RefuseEach("opendir", error, check), 1);
        EXPECT_EQ(RefuseEach("opendir", error, checkIds), 1);
    }
    for (int error : readFolderErrors) {
        EXPECT_EQ(RefuseEach("readdir", error, check), 6) << "two more entries, and the end";
        EXPECT_EQ(RefuseEach("readdir", error, checkIds), 6);
    }
}

class RefusedHostTest : public RefusedObjectsTest {
protected:
    RefusedHostTest() {
        machine.Write("proc/uptime", "93784.12 180000.00\n");
        machine.Write("proc/loadavg", "0.15 0.10 0.05 1/234 5678\n");
        machine.Write("proc/7/stat", "");
    }

    // The values that cannot be had: "uname" says the first three, and so on.
    static void ExpectHost(bool hasNames, bool hasUptime, bool hasLoads, bool hasCount) {
        Record const record = ReadHost().value().records.at(0);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(record.at(i).has_value(), hasNames);
            EXPECT_NE(record.at(i), "") << "it is not there, or it is something";
        }
        Record const rest(record.begin() + 3, record.end());
        auto const value = [](bool isThere, char const* text) {
            return isThere ? Value(text) : std::nullopt;
        };
        EXPECT_EQ(rest,
                  (Record{value(hasUptime, "93784"), value(hasLoads, "0.15"),
                          value(hasLoads, "0.10"), value(hasLoads, "0.05"), value(hasCount, "1")}));
    }
};

TEST_F(RefusedHostTest, WhatIsNotReadCannotBeHadAndTheRestCan) {
    auto const checkFile = [](auto const& isRefused) {
        ExpectHost(true, !isRefused(1), !isRefused(0), true);  // the loads come first
    };
    for (int error : openErrors) {
        EXPECT_EQ(RefuseEach("fopen", error, checkFile), 2);
    }
    for (int error : readErrors) {
        for (std::size_t bytes : {0U, 1U, 15U}) {
            calls.bytes = bytes;
            EXPECT_EQ(RefuseEach("fread", error, checkFile), 2);
        }
    }
    auto const checkFolder = [](auto const& isRefused) {
        bool isCut = false;  // at an entry, or at the end
        for (int call = 0; call < 6; ++call) {
            isCut = isCut || isRefused(call);
        }
        ExpectHost(true, true, true, !isCut);
    };
    for (int error : readFolderErrors) {
        EXPECT_EQ(RefuseEach("readdir", error, checkFolder), 6);
    }
    for (int error : openFolderErrors) {
        EXPECT_EQ(
            RefuseEach("opendir", error,
                       [](auto const& isRefused) { ExpectHost(true, true, true, !isRefused(0)); }),
            1);
    }
}

TEST_F(RefusedHostTest, ASystemThatDoesNotTellItsNamesHasNone) {
    for (int error : {EFAULT, ENOSYS, EPERM}) {
        EXPECT_EQ(
            RefuseEach("uname", error,
                       [](auto const& isRefused) { ExpectHost(!isRefused(0), true, true, true); }),
            1);
    }
}

TEST_F(RefusedObjectsTest, TheMemoryIsNotThereWithoutItsFile) {
    std::string const text = "MemTotal: 2 kB\nMemAvailable: 1 kB\n";
    machine.Write("proc/meminfo", text);
    ExpectNoneWithoutItsFile(ReadMemory, "memory", text.size());
}

class RefusedStorageTest : public RefusedObjectsTest {
protected:
    RefusedStorageTest() {
        for (char const* place : {"/proc", "/sys", ""}) {
            std::filesystem::create_directories(machine.Folder() + place);
            mounts += "1 0 8:" + std::to_string(mounts.size()) + " / " + machine.Folder() + place +
                      " rw - ext4 dev rw\n";
        }
        machine.Write("proc/self/mountinfo", mounts);
    }

    // The places that have figures, all three or none: "110" is the first two of them.
    static std::string Figures() {
        std::string figures;
        Table const table = ReadStorage().value();
        for (Record const& record : table.records) {
            EXPECT_EQ(record.at(2), "ext4");
            EXPECT_EQ(record.at(3).has_value(), record.at(4).has_value());
            EXPECT_EQ(record.at(3).has_value(), record.at(5).has_value());
            figures += record.at(3) ? '1' : '0';
        }
        return figures;
    }

    void ExpectNoFigures(char const* call, int error) {
        auto const check = [](auto const& isRefused) {
            std::string expected;
            for (int i = 0; i < 3; ++i) {
                expected += isRefused(i) ? '0' : '1';
            }
            EXPECT_EQ(Figures(), expected);
        };
        EXPECT_EQ(RefuseEach(call, error, check), 3);
    }

    std::string mounts;
};

TEST_F(RefusedStorageTest, AFileSystemThatDoesNotTellHasNoFiguresAndTheOthersHave) {
    for (int error : {EACCES, EINTR, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOSYS, ENOTDIR,
                      EOVERFLOW, ESTALE}) {
        ExpectNoFigures("statvfs", error);
    }
}

TEST_F(RefusedStorageTest, AFileSystemIsNotAskedWithoutAThreadAndTheOthersAre) {
    for (int error : {EAGAIN, EPERM}) {
        ExpectNoFigures("pthread_create", error);
    }
}

TEST_F(RefusedStorageTest, TheStorageIsNotThereWithoutItsFile) {
    auto const check = [&](auto const& isRefused) {
        EXPECT_EQ(Show(ReadStorage, "storage") == "no table\n", isRefused(0));
    };
    for (int error : openErrors) {
        EXPECT_EQ(RefuseEach("fopen", error, check), 1);
    }
    for (int error : readErrors) {
        for (std::size_t bytes : {std::size_t{0}, mounts.size() / 2, mounts.size()}) {
            calls.bytes = bytes;
            EXPECT_EQ(RefuseEach("fread", error, check), 1);
        }
    }
}

TEST_F(RefusedObjectsTest, InterfacesThatTheSystemDoesNotTellAreReportedWithTheReason) {
    for (int error : {EACCES, EMFILE, ENFILE, ENOBUFS, ENOMEM}) {
        auto const check = [&](auto const& isRefused) {
            CapturedStderr const log;
            EXPECT_EQ(ReadInterfaces().has_value(), !isRefused(0));
            EXPECT_EQ(log.Text().find("getifaddrs() failed - " +
                                      std::string(std::strerror(error))) != std::string::npos,
                      isRefused(0));
        };
        EXPECT_EQ(RefuseEach("getifaddrs", error, check), 1);
    }
}

// The loopback interface comes first.
TEST_F(RefusedObjectsTest, AFileOfAnInterfaceThatIsNotReadIsAsOneThatIsNotThere) {
    std::string const folder = "sys/class/net/lo/";
    machine.Write(folder + "ifindex", std::to_string(if_nametoindex("lo")) + "\n");
    std::vector<std::pair<char const*, std::size_t>> const files = {
        {"operstate", 1}, {"statistics/rx_bytes", 5}, {"statistics/tx_bytes", 6}, {"mtu", 7}};
    for (auto const& [file, field] : files) {
        machine.Write(folder + file, "as in the file\n");
    }
    auto const check = [&](auto const& isRefused) {
        Record const record = ReadInterfaces().value().records.at(0);
        ASSERT_EQ(record.at(0), "lo");
        // A folder that does not say whose it is, is not read: the next file is another's.
        for (int i = 0; i < 4; ++i) {
            std::size_t const field = files[static_cast<std::size_t>(i)].second;
            EXPECT_EQ(record.at(field) == "as in the file", !isRefused(0) && !isRefused(i + 1))
                << field;
        }
        EXPECT_EQ(record.at(7).has_value(), record.at(7) == "as in the file");
        EXPECT_TRUE(record.at(1).has_value());
    };
    for (int error : openErrors) {
        EXPECT_GE(RefuseEach("fopen", error, check), 5);
    }
    for (int error : readErrors) {
        for (std::size_t bytes : {0U, 1U}) {
            calls.bytes = bytes;
            EXPECT_GE(RefuseEach("fread", error, check), 5);
        }
    }
}

class RefusedLogFileTest : public RefusedCallsTest {
protected:
    // The log of one entry, with each of the calls refused.
    void ExpectNoEntries(char const* call, int error) {
        auto const check = [&](auto const& isRefused) {
            CapturedStderr const log;
            Log_SpecEntry(logSpecWarn, "here.cpp", 5, "entry");
            std::optional<Table> const table = FindInLog("");
            EXPECT_EQ(table.has_value(), !isRefused(0));
            EXPECT_EQ(table ? table->records.size() : 2, 2U) << "the entry and the end";
            EXPECT_EQ(log.Text().find("log: standard error is no file that can be read") !=
                          std::string::npos,
                      isRefused(0));
        };
        EXPECT_EQ(RefuseEach(call, error, check), 1);
    }
};

TEST_F(RefusedLogFileTest, ALogThatIsNotReadHasNoEntries) {
    for (int error : {EACCES, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}) {
        ExpectNoEntries("stat", error);
    }
    for (int error : openErrors) {
        ExpectNoEntries("fopen", error);
    }
    for (int error : {EBADF, EIO, ENOMEM, EOVERFLOW}) {
        ExpectNoEntries("fstat", error);
    }
    for (int error : {EBADF, EINVAL, EIO, EOVERFLOW, ESPIPE}) {
        ExpectNoEntries("fseeko", error);
    }
}

TEST_F(RefusedLogFileTest, ALogThatBreaksOffHasNoEntriesRatherThanSome) {
    for (int error : readErrors) {
        for (std::size_t bytes : {0U, 1U, 20U, 60U}) {
            calls.bytes = bytes;
            ExpectNoEntries("fread", error);
        }
    }
}

}  // namespace
