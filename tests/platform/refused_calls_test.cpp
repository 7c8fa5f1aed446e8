// The host platform when the system refuses a call: with every error that the call can give.
#include "platform/refused_calls.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/answer_stream.hpp"
#include "host/catalogs.hpp"
#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/sys/process_ids.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/space_probe.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/refused_calls_fixture.hpp"
#include "platform/shipped_catalog.hpp"
#include "platform/temp_folder.hpp"

using namespace QuilloHost;

namespace {

TEST_F(RefusedCallsTest, AFileThatIsNotOpenedHasNoText) {
    for (int error : {EACCES, EINTR, EIO, ELOOP, EMFILE, ENAMETOOLONG, ENFILE, ENOENT, ENOMEM,
                      ENOTDIR, ENXIO, EOVERFLOW}) {
        calls.errors = {{"fopen", error}};
        EXPECT_FALSE(ReadText("/proc/uptime").has_value()) << error;
        EXPECT_FALSE(ReadFirstLine("/proc/uptime").has_value()) << error;
    }
    calls.errors.clear();
    EXPECT_TRUE(ReadText("/proc/uptime").has_value());
}

TEST_F(RefusedCallsTest, AFileThatBreaksOffHasNoText) {
    for (int error : {EAGAIN, EINTR, EIO, EISDIR, ESRCH}) {
        for (int bytes : {0, 1, 4095, 4096, 4097, 9000}) {
            calls.errors = {{"fread", error}};
            calls.before = bytes;
            EXPECT_FALSE(ReadText("/proc/uptime").has_value()) << error << " " << bytes;
        }
    }
}

TEST_F(RefusedCallsTest, AFolderThatIsNotOpenedHasNoProcesses) {
    for (int error : {EACCES, EMFILE, ENFILE, ENOENT, ENOMEM, ENOTDIR}) {
        CapturedStderr const log;
        calls.errors = {{"opendir", error}};
        EXPECT_FALSE(ReadProcessIds().has_value()) << error;
        EXPECT_FALSE(ReadProcesses().has_value()) << error;
        EXPECT_NE(log.Text().find("processes: /proc cannot be read"), std::string::npos);
    }
}

TEST_F(RefusedCallsTest, AFolderThatBreaksOffHasNoProcessesRatherThanSome) {
    for (int error : {EBADF, EIO, ENOENT, EOVERFLOW}) {
        for (int entries : {0, 1, 5}) {
            CapturedStderr const log;
            calls.errors = {{"readdir", error}};
            calls.before = entries;
            EXPECT_FALSE(ReadProcessIds().has_value()) << error << " behind " << entries;
            calls.before = entries;
            EXPECT_FALSE(ReadProcesses().has_value()) << error << " behind " << entries;
        }
    }
    calls.errors.clear();
    EXPECT_FALSE(ReadProcessIds().value().empty());
}

TEST_F(RefusedCallsTest, InterfacesThatTheSystemDoesNotTellAreReportedWithTheReason) {
    for (int error : {EACCES, EMFILE, ENFILE, ENOBUFS, ENOMEM}) {
        CapturedStderr const log;
        calls.errors = {{"getifaddrs", error}};
        EXPECT_FALSE(ReadInterfaces().has_value());
        ExpectReason(log, error);
    }
}

TEST_F(RefusedCallsTest, AFileSystemThatDoesNotTellHasNoFigures) {
    for (int error : {EACCES, EINTR, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOSYS, ENOTDIR,
                      EOVERFLOW, ESTALE}) {
        calls.errors = {{"statvfs", error}};
        EXPECT_FALSE(AskFileSystem("/").has_value()) << error;
    }
}

TEST_F(RefusedCallsTest, WithoutAThreadAFileSystemIsNotAsked) {
    SpaceProbe probe(AskFileSystem, std::chrono::hours(1));
    for (int error : {EAGAIN, EPERM}) {
        calls.errors = {{"pthread_create", error}};
        EXPECT_FALSE(probe.SpaceAt("/").has_value()) << error;
    }
    calls.errors.clear();
    EXPECT_TRUE(probe.SpaceAt("/").has_value());
}

TEST_F(RefusedCallsTest, ALogThatIsNotReadHasNoEntries) {
    for (char const* call : {"stat", "fopen", "fstat", "fseeko", "read"}) {
        for (int error :
             {EACCES, EBADF, EINTR, EIO, ELOOP, EMFILE, ENFILE, ENOENT, ENOMEM, EOVERFLOW}) {
            CapturedStderr const log;
            Log_SpecEntry(logSpecWarn, "here.cpp", 5, "entry");
            calls.errors = {{call, error}};
            EXPECT_FALSE(FindInLog("").has_value()) << call << " " << error;
            calls.errors.clear();
            EXPECT_NE(log.Text().find("log: standard error is no file that can be read"),
                      std::string::npos);
            EXPECT_EQ(FindInLog("").value().records.size(), 3U);
        }
    }
}

class RefusedCatalogsTest : public RefusedCallsTest {
protected:
    RefusedCatalogsTest() {
        ShippedCatalog const german;
        for (char const* name : {"ar-eg", "de-de", "en-us"}) {
            folder.Write(name + std::string("/LC_MESSAGES/quillo.mo"), german.bytes);
        }
    }

    // The names of the languages, read anew, and what is logged on the way.
    std::vector<std::string> Names() {
        CapturedStderr const captured;
        SetCatalogFolder(folder.path);
        std::vector<std::string> const names = CatalogNames();
        log = captured.Text();
        return names;
    }

    void ExpectEntry(std::string const& said) const {
        EXPECT_NE(log.find(said), std::string::npos) << log;
    }

    TempFolder const folder;
    std::string log;
};

TEST_F(RefusedCatalogsTest, AFolderThatIsNotOpenedIsReportedWithTheReason) {
    for (int error : {EACCES, EMFILE, ENFILE, ENOMEM, ENOTDIR}) {
        calls.errors = {{"opendir", error}};
        EXPECT_EQ(Names(), std::vector<std::string>());
        ExpectEntry("the folder of the catalogs, \"" + folder.path + "\", cannot be read - " +
                    std::strerror(error));
        ExpectEntry("phrases are not translated");
    }
    calls.errors.clear();
    EXPECT_EQ(Names(), (std::vector<std::string>{"ar-eg", "de-de", "en-us"}));
    EXPECT_EQ(log, "");
}

TEST_F(RefusedCatalogsTest, AFolderThatBreaksOffIsReportedAndHasTheLanguagesBeforeThat) {
    for (int error : {EBADF, EIO, EOVERFLOW}) {
        std::size_t offered = 0;
        for (int entries : {0, 1, 2, 3, 4, 5}) {
            calls.errors = {{"readdir", error}};
            calls.before = entries;
            std::size_t const names = Names().size();
            EXPECT_GE(names, offered) << entries;
            offered = names;
            ExpectEntry(std::string("cannot be read - ") + std::strerror(error) +
                        ": languages may be missing");
        }
        EXPECT_EQ(offered, 3U);
    }
}

TEST_F(RefusedCatalogsTest, AFolderThatIsGoneHasNoLanguage) {
    for (char const* call : {"opendir", "readdir"}) {
        calls.errors = {{call, ENOENT}};
        calls.before = 0;
        EXPECT_EQ(Names(), std::vector<std::string>());
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
        ExpectEntry("no catalog in");
    }
}

TEST_F(RefusedCatalogsTest, AFileThatIsNotReadIsLeftOut) {
    for (char const* call : {"stat", "fopen", "fread"}) {
        for (int error :
             {EACCES, EINTR, EIO, ELOOP, EMFILE, ENAMETOOLONG, ENFILE, ENOMEM, EOVERFLOW}) {
            calls.errors = {{call, error}};
            calls.before = 0;
            EXPECT_EQ(Names(), std::vector<std::string>()) << call << " " << error;
            EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 3) << log;
            ExpectEntry(
                "de-de/LC_MESSAGES/quillo.mo cannot be read, its language is not offered: "
                "it is no file that this process may read");
        }
    }
}

TEST_F(RefusedCallsTest, AnAnswerIsWrittenOnThroughShortWritesAndInterruptions) {
    std::string const answer(20000, 'a');
    for (std::deque<ssize_t> const& writes : std::vector<std::deque<ssize_t>>{
             {1}, {-EINTR}, {-EINTR, -EINTR, 4096, -EINTR, 1, 1}, {19999, -EINTR}}) {
        CapturePipe pipe;
        calls.writes = writes;
        EXPECT_TRUE(WriteAnswer(pipe.out, answer, "thing"));
        EXPECT_TRUE(calls.writes.empty());
        EXPECT_EQ(pipe.Finish(), answer);
    }
}

TEST_F(RefusedCallsTest, AWriteThatFailsIsReportedWithTheReason) {
    for (int error : {EAGAIN, EBADF, EDQUOT, EFBIG, EIO, ENOSPC, EPERM, EPIPE}) {
        for (std::deque<ssize_t> const& writes :
             std::vector<std::deque<ssize_t>>{{-error}, {5, -error}, {-EINTR, 5, -error}}) {
            CapturedStderr const log;
            CapturePipe pipe;
            calls.writes = writes;
            EXPECT_FALSE(WriteAnswer(pipe.out, "the answer", "thing"));
            EXPECT_TRUE(calls.writes.empty());
            ExpectReason(log, error);
        }
    }
}

TEST_F(RefusedCallsTest, AWriteThatTakesNothingIsNotTriedForEver) {
    CapturedStderr const log;
    CapturePipe pipe;
    calls.writes = {0, -EBADF};
    EXPECT_FALSE(WriteAnswer(pipe.out, "the answer", "thing"));
    EXPECT_EQ(calls.writes.size(), 1U);
    ExpectReason(log, EIO);
}

TEST_F(RefusedCallsTest, APipeThatCannotBeEnlargedTakesNoLargerAnswer) {
    for (int error : {EBUSY, ENOMEM, EPERM}) {
        CapturedStderr const log;
        CapturePipe pipe;
        calls.errors = {{"F_SETPIPE_SZ", error}};
        EXPECT_FALSE(WriteAnswer(pipe.out, std::string(pipe.Capacity() + 1, 'a'), "thing"));
        EXPECT_EQ(pipe.Unread(), 0U);
        EXPECT_NE(log.Text().find("and the pipe has room for"), std::string::npos) << log.Text();
        EXPECT_TRUE(WriteAnswer(pipe.out, std::string(pipe.Capacity(), 'a'), "thing"));
    }
}

TEST_F(RefusedCallsTest, APipeThatDoesNotTellItsSizeIsTakenForAFullOne) {
    calls.errors = {{"F_GETPIPE_SZ", EINVAL}, {"F_SETPIPE_SZ", EPERM}};
    CapturedStderr const log;
    CapturePipe pipe;
    EXPECT_FALSE(WriteAnswer(pipe.out, "answer", "thing"));
    EXPECT_NE(log.Text().find("the pipe has room for 0"), std::string::npos) << log.Text();
    calls.errors.erase("F_SETPIPE_SZ");
    EXPECT_TRUE(WriteAnswer(pipe.out, "answer", "thing"));
    EXPECT_EQ(pipe.Finish(), "answer");
}

TEST_F(RefusedCallsTest, AnOutputThatDoesNotTellWhatItIsGetsTheAnswerAllTheSame) {
    for (char const* call : {"fstat", "ioctl"}) {
        for (int error : {EBADF, EIO, ENOMEM, ENOTTY, EOVERFLOW}) {
            CapturePipe pipe;
            calls.errors = {{call, error}};
            EXPECT_TRUE(WriteAnswer(pipe.out, "answer", "thing"));
            EXPECT_EQ(pipe.Finish(), "answer");
        }
    }
}

}  // namespace
