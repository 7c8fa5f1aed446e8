#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "host/sys/sys_objects.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"
#include "platform/system_calls.hpp"

namespace {

using QuilloHost::ReadStorage;

// Every file system has 1000 blocks of 512 bytes, 300 of them free and 200 of those for everyone;
// but for places below /none, without blocks, and below /closed, which do not tell.
int Figures(std::string const& place, struct statvfs& figures) {
    if (place.compare(0, 7, "/closed") == 0) {
        errno = EACCES;
        return -1;
    }
    figures.f_bsize = 4096;
    figures.f_frsize = 512;
    figures.f_blocks = place.compare(0, 5, "/none") == 0 ? 0 : 1000;
    figures.f_bfree = figures.f_blocks == 0 ? 0 : 300;
    figures.f_bavail = figures.f_blocks == 0 ? 0 : 200;
    return 0;
}

// What the object shows for a file of mounts.
class Storage : public testing::Test {
protected:
    Storage() { SystemCalls::Now().statvfs = Figures; }

    std::string Read(std::string const& mountinfo) const {
        machine.Write("proc/self/mountinfo", mountinfo);
        return Shown(ReadStorage());
    }

    FixtureMachine machine;
    ChangedSystemCalls calls;
};

std::string const figures = "|512000|358400|102400\n";

TEST_F(Storage, ShowsAFileSystemWithItsFigures) {
    EXPECT_EQ(Read("36 35 98:0 / / rw,noatime master:1 shared:2 - ext3 /dev/root rw,errors=x\n"),
              "/|/dev/root|ext3" + figures);
    EXPECT_EQ(Read("36 35 0:21 / /run rw - tmpfs tmpfs rw\n"), "/run|tmpfs|tmpfs" + figures);
}

TEST_F(Storage, ShowsWhatKeepsDataWithoutADevice) {
    for (std::string const type : {"overlay", "nfs4", "cifs", "9p", "fuse.sshfs", "tmpfs"}) {
        EXPECT_EQ(Read("36 35 0:21 / / rw - " + type + " src rw\n"), "/|src|" + type + figures);
    }
}

TEST_F(Storage, DecodesOctalEscapes) {
    EXPECT_EQ(Read(R"(36 35 98:0 / /a\040b\011c\012d\134040 rw - ext3 /dev/\303\251 rw)"),
              "/a b\tc\nd\\040|/dev/\xc3\xa9|ext3" + figures);
    EXPECT_EQ(Read(R"(36 35 98:0 / /a\04 rw - ext3 \04x\089 rw)"),
              "/a\\04|\\04x\\089|ext3" + figures);
}

TEST_F(Storage, ShowsADeviceWithoutAName) {
    EXPECT_EQ(Read("36 35 0:21 / /a rw - tmpfs  rw\n"), "/a||tmpfs" + figures);
}

TEST_F(Storage, LeavesOutFileSystemsOfTheKernel) {
    for (std::string const type : {"devtmpfs", "hugetlbfs", "efivarfs", "ramfs", "autofs"}) {
        EXPECT_EQ(Read("36 35 0:5 / /a rw - " + type + " x rw\n"), "") << type;
    }
    EXPECT_EQ(Read("36 35 0:5 / /none/proc rw - proc proc rw\n"), "");
}

TEST_F(Storage, ShowsAPlaceThatIsCoveredOnce) {
    EXPECT_EQ(Read("1 0 8:1 / /a rw - ext4 /dev/a rw\n"
                   "2 0 8:2 / /b rw - ext4 /dev/b rw\n"
                   "3 1 8:3 / /a rw - ext4 /dev/c rw\n"),
              "/b|/dev/b|ext4" + figures + "/a|/dev/c|ext4" + figures);
}

TEST_F(Storage, ShowsAFileSystemThatIsMountedTwiceAtItsFirstPlace) {
    EXPECT_EQ(Read("1 0 8:1 / /a rw - ext4 /dev/a rw\n"
                   "2 0 8:1 /etc /b rw - ext4 /dev/a rw\n"
                   "3 0 8:11 / /c rw - ext4 /dev/c rw\n"),
              "/a|/dev/a|ext4" + figures + "/c|/dev/c|ext4" + figures);
}

TEST_F(Storage, CannotHaveTheFiguresOfAFileSystemThatDoesNotTell) {
    EXPECT_EQ(Read("1 0 8:1 / /closed rw - ext4 /dev/a rw\n"
                   "2 0 8:2 / /b rw - ext4 /dev/b rw\n"),
              "/closed|/dev/a|ext4|~|~|~\n/b|/dev/b|ext4" + figures);
}

TEST_F(Storage, LeavesOutLinesOfAnotherForm) {
    EXPECT_EQ(Read(""), "");
    EXPECT_EQ(Read("\n \n- \n1 0 8:1 / /a rw\n1 0 8:1 / /a rw - ext4\n1 0 8:1 / /a - ext4 d rw\n"
                   "2 0 8:2 / /b rw - ext4 /dev/b"),
              "/b|/dev/b|ext4" + figures);
}

// A thread that hangs is not the one that serves the request.
TEST_F(Storage, AsksNoFileSystemOnTheCallersThread) {
    std::mutex mutex;
    std::set<std::thread::id> threads;
    SystemCalls::Now().statvfs = [&](std::string const& place, struct statvfs& told) {
        std::lock_guard<std::mutex> const lock(mutex);
        threads.insert(std::this_thread::get_id());
        return Figures(place, told);
    };
    Read("1 0 8:1 / /a rw - ext4 /dev/a rw\n2 0 8:2 / /b rw - ext4 /dev/b rw\n");
    EXPECT_FALSE(threads.empty());
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(StorageFile, IsNeeded) {
    FixtureMachine machine;
    CapturedStderr const captured;
    EXPECT_EQ(Shown(ReadStorage()), "no table\n");
    EXPECT_NE(captured.Text().find("storage: " + machine.Folder() +
                                   "/proc/self/mountinfo cannot be read\n"),
              std::string::npos)
        << captured.Text();
}

TEST(StorageOfThisMachine, HasTheRoot) {
    auto const table = *ReadStorage();
    struct statvfs root {};
    ASSERT_EQ(statvfs("/", &root), 0);
    EXPECT_EQ(ValueIn(table, "mount", "/", "size"),
              std::to_string(std::uint64_t{root.f_blocks} * root.f_frsize));
    EXPECT_LE(std::stoull(ValueIn(table, "mount", "/", "used")) +
                  std::stoull(ValueIn(table, "mount", "/", "available")),
              std::stoull(ValueIn(table, "mount", "/", "size")));
    EXPECT_NE(ValueIn(table, "mount", "/", "type"), "~");
    std::set<std::string> places;
    for (auto const& record : table.records) {
        EXPECT_TRUE(places.insert(record.at(0).value()).second) << record.at(0).value();
        EXPECT_NE(record.at(2), "proc");
        EXPECT_NE(record.at(2), "sysfs");
    }
}

}  // namespace
