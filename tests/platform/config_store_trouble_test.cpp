// The configuration store in trouble: what fails changes nothing, says so, and works when the
// trouble is over.
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/config_store.hpp"
#include "host/database.hpp"
#include "platform/disk_calls.hpp"
#include "platform/plain_user.hpp"
#include "platform/store_fixture.hpp"

using namespace QuilloHost;

namespace {

std::function<void()> whileWaiting;

// A lock that cannot be had is tried for again and again, for seconds.
bool waits = true;

}  // namespace

// SQLite's way to wait.
extern "C" int usleep(useconds_t duration) {
    if (whileWaiting) {
        std::exchange(whileWaiting, nullptr)();
        return 0;
    }
    return waits ? reinterpret_cast<decltype(usleep)*>(dlsym(RTLD_NEXT, "usleep"))(duration) : 0;
}

namespace {

namespace fs = std::filesystem;

class TroubledStore : public StoreFixture {
protected:
    // A store of its own: the default of x is 0, its stored value 3, its running value 4.
    static void Begin(std::string const& state, bool isNew) {
        SetStateFolder(state);
        if (!isNew) {
            ASSERT_EQ(ConfigUpdate("x=3"), 0);
            ASSERT_EQ(Cfg_SetAttrValue("x", "4"), 0);
        }
    }

    // ConfigUpdate with a disk in trouble, from the call behind `allowed` on. Returns whether there
    // were so many calls.
    static bool Check(bool isNew, DiskCalls::Trouble trouble, int allowed, int error) {
        TempFolder const place;
        Begin(place.path + "/state", isNew);
        long status = -1;
        std::string const log = Log([&] {
            DiskCalls const calls(allowed, trouble, error);
            status = ConfigUpdate("x=5");
        });
        std::string const failed = DiskCalls::FirstFailed();
        SCOPED_TRACE(failed + ", call " + std::to_string(allowed) + ": " + log);
        bool const isDone = status == ConfigStatus_Done;
        EXPECT_TRUE(isDone || status == ConfigStatus_StoreFailed) << status;
        EXPECT_EQ(isDone, log.empty());
        EXPECT_TRUE(isDone || IsEntryAbout(log, place.path + "/state"));
        // What was written but could not be synced is removed, unless that fails, too.
        bool const mayHold = trouble == DiskCalls::Trouble::FailureFromThenOn &&
                             log.find("the old or the new one may hold") != std::string::npos;
        std::string const values = Values();
        if (!mayHold || values != "5 5") {
            EXPECT_EQ(values, isDone ? "5 5" : isNew ? "0 0" : "4 3");
        }
        EXPECT_TRUE(isDone || !IsSurvived(trouble, failed, error)) << status;
        EXPECT_EQ(ConfigUpdate("x=6"), 0);
        EXPECT_EQ(Values(), "6 6");
        return !failed.empty();
    }

    // Whether a call is done again, or on, that a signal interrupted or that did a part.
    static bool IsSurvived(DiskCalls::Trouble trouble, std::string const& call, int error) {
        static std::set<std::string> const doneAgain = {
            "open", "open64", "read", "pread64", "write", "pwrite64", "ftruncate64"};
        return trouble == DiskCalls::Trouble::ShortWrite ||
               trouble == DiskCalls::Trouble::ShortRead ||
               (error == EINTR && doneAgain.count(call) != 0);
    }

    // A reading and ConfigUpdate, with the calls that look at files in trouble. Returns whether
    // there were so many calls.
    static bool CheckReading(DiskCalls::Trouble trouble, int allowed, int error, bool isUpdate) {
        TempFolder const place;
        Begin(place.path + "/state", false);
        int value = 4711;
        long status = -1;
        std::string const log = Log([&] {
            DiskCalls const calls(allowed, trouble, error);
            waits = false;
            status = isUpdate ? ConfigUpdate("x=5") : Cfg_GetBoolAttrValue("x", &value);
            waits = true;
        });
        std::string const failed = DiskCalls::FirstFailed();
        SCOPED_TRACE(failed + ", call " + std::to_string(allowed) + ", " + std::strerror(error) +
                     ": " + log);
        bool const isDone = status == ConfigStatus_Done;
        EXPECT_TRUE(isDone || status == ConfigStatus_StoreFailed) << status;
        EXPECT_EQ(isDone, log.empty());
        EXPECT_TRUE(isDone || IsEntryAbout(log, place.path + "/state"));
        EXPECT_TRUE(isDone || !IsSurvived(trouble, failed, error)) << status;
        EXPECT_EQ(value, isDone && !isUpdate ? 4 : 4711);
        EXPECT_EQ(Values(), isDone && isUpdate ? "5 5" : "4 3");
        return !failed.empty();
    }

    // With the first call in trouble, the second and so on. Returns how many there are.
    static int CheckEach(DiskCalls::Trouble trouble, int error, bool isNew) {
        int allowed = 0;
        while (Check(isNew, trouble, allowed, error)) {
            ++allowed;
        }
        return allowed;
    }

    static int CheckEachReading(DiskCalls::Trouble trouble, int error, bool isUpdate) {
        int allowed = 0;
        while (CheckReading(trouble, allowed, error, isUpdate)) {
            ++allowed;
        }
        return allowed;
    }

    // One entry, that says what, where and what to do.
    static bool IsEntryAbout(std::string const& log, std::string const& place) {
        std::size_t const entry = log.find(": setting \"x\": " + place);
        bool const isOne = entry != std::string::npos && log.find('\n') == log.size() - 1;
        for (
            char const* const advice :
            {": make room on its disk\n", ": see that its disk is sound and has room\n",
             ": let this process write to it and to its folder, and make room on its disk\n",
             ": see to its disk and set the value again, for the old or the new one may hold now\n",
             ": do it again when the process that writes to it is done\n",
             ": move it away, and every setting has its default again\n",
             ": put a file in the place of the symbolic link\n",
             ": QUILLO_STATE_DIR names the folder of the store\n"}) {
            std::size_t const at = log.find(advice);
            if (at != std::string::npos && at > entry) {
                return isOne;
            }
        }
        return false;
    }

    // `call` fails, with an entry about `place` that has `said` in it.
    static void ExpectFailure(std::function<long()> const& call, std::string const& place,
                              std::string const& said) {
        std::string const log = Log([&] { EXPECT_EQ(call(), ConfigStatus_StoreFailed); });
        EXPECT_TRUE(IsEntryAbout(log, place)) << log;
        EXPECT_NE(log.find(said), std::string::npos) << log;
    }

    static void ExpectNoWriting(std::string const& place, std::string const& said) {
        ExpectFailure([] { return Cfg_SetAttrValue("x", "5"); }, place, said);
        ExpectFailure([] { return ConfigUpdate("x=5"); }, place, said);
    }

    static void ExpectFailures(std::string const& place, std::string const& said) {
        int value = 4711;
        ExpectFailure([&] { return Cfg_GetBoolAttrValue("x", &value); }, place, said);
        EXPECT_EQ(value, 4711);
        ExpectNoWriting(place, said);
    }

    void ExpectUsable() {
        EXPECT_EQ(ConfigUpdate("x=6"), 0);
        EXPECT_EQ(Values(), "6 6");
    }
};

// SQLite does a call again that a signal interrupts, however often that is: it does so once.
TEST_F(TroubledStore, AFailingCallOfTheDiskIsSurvivedOrAFailureThatChangesNothing) {
    for (bool const isNew : {false, true}) {
        for (int const error :
             {EACCES, EDQUOT, EFBIG, EINTR, EIO, EMFILE, ENFILE, ENOENT, ENOSPC, EPERM, EROFS}) {
            EXPECT_GT(CheckEach(DiskCalls::Trouble::Failure, error, isNew), 10);
        }
        for (int const error : {EACCES, EDQUOT, EIO, ENOSPC, EROFS}) {
            EXPECT_GT(CheckEach(DiskCalls::Trouble::FailureFromThenOn, error, isNew), 10);
        }
    }
}

TEST_F(TroubledStore, AFileThatCannotBeLookedAtIsSurvivedOrAFailureThatChangesNothing) {
    for (bool const isUpdate : {false, true}) {
        for (int const error : {EACCES, EAGAIN, EBADF, EFAULT, EINTR, EINVAL, EIO, ELOOP, EMFILE,
                                ENAMETOOLONG, ENFILE, ENOLCK, ENOMEM, EOVERFLOW, EPERM}) {
            EXPECT_GT(CheckEachReading(DiskCalls::Trouble::ReadFailure, error, isUpdate), 10);
        }
        for (int const error : {EACCES, EAGAIN, EIO, ENOLCK}) {
            EXPECT_GT(CheckEachReading(DiskCalls::Trouble::ReadFailureFromThenOn, error, isUpdate),
                      10);
        }
    }
}

TEST_F(TroubledStore, AWriteAndAReadThatDoAPartAreDoneOn) {
    for (bool const isOther : {false, true}) {
        EXPECT_GT(CheckEach(DiskCalls::Trouble::ShortWrite, 0, isOther), 3);
        EXPECT_GT(CheckEachReading(DiskCalls::Trouble::ShortRead, 0, isOther), 3);
    }
}

TEST_F(TroubledStore, AFullDiskIsNamed) {
    std::string const log = Log([] {
        DiskCalls const calls(0, DiskCalls::Trouble::FailureFromThenOn, ENOSPC);
        EXPECT_EQ(ConfigUpdate("x=5"), ConfigStatus_StoreFailed);
    });
    EXPECT_NE(log.find("ConfigUpdate: setting \"x\": " + State() +
                       " cannot be made: No space left on device: "),
              std::string::npos)
        << log;
}

// The first call makes it, the second syncs the folder that it lies in.
TEST_F(TroubledStore, AFolderThatCannotBeSyncedIsNotLeftAsIfItWere) {
    std::string const log = Log([] {
        DiskCalls const calls(1, DiskCalls::Trouble::Failure, EIO);
        EXPECT_EQ(ConfigUpdate("x=5"), ConfigStatus_StoreFailed);
    });
    EXPECT_EQ(DiskCalls::FirstFailed(), "fsync");
    EXPECT_NE(log.find(State() + " cannot be made: Input/output error: "), std::string::npos)
        << log;
    EXPECT_FALSE(fs::exists(State()));
    ExpectUsable();
}

TEST_F(TroubledStore, AFolderIsNotMadeWhereItsNameCannotBeSynced) {
    fs::permissions(folder.path, fs::perms::owner_write | fs::perms::owner_exec);
    {
        PlainUser const user;
        ExpectNoWriting(State(), "Permission denied");
    }
    EXPECT_FALSE(fs::exists(State()));
    fs::permissions(folder.path, fs::perms::owner_all);
    ExpectUsable();
}

TEST_F(TroubledStore, AFileSystemThatSyncsNoFoldersHoldsAStore) {
    DiskCalls const calls(1, DiskCalls::Trouble::Failure, EINVAL);
    EXPECT_EQ(ConfigUpdate("x=5"), 0);
    EXPECT_EQ(DiskCalls::FirstFailed(), "fsync");
    EXPECT_EQ(Values(), "5 5");
}

TEST_F(TroubledStore, AFolderIsMadeWithThoseItLiesIn) {
    SetStateFolder(folder.path + "/of/the/store");
    mode_t const mask = umask(S_IWGRP | S_IWOTH);
    ExpectUsable();
    umask(mask);
    EXPECT_EQ(fs::status(folder.path + "/of/the/store").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder.path + "/of/the").permissions(), fs::perms{0755});
    folder.Write("file", "");
    SetStateFolder(folder.path + "/file/of/the/store");
    ExpectNoWriting(folder.path + "/file/of/the/store", "Not a directory");
}

TEST_F(TroubledStore, AFolderThatMayNotBeWrittenToIsNamed) {
    Begin(State(), false);
    fs::permissions(State(), fs::perms::owner_read | fs::perms::owner_exec);
    {
        PlainUser const user;
        ExpectNoWriting(File(), "attempt to write a readonly database");
        EXPECT_EQ(Values(), "4 3") << "reading goes on";
    }
    fs::permissions(State(), fs::perms::owner_all);
    EXPECT_EQ(Values(), "4 3");
    ExpectUsable();
}

TEST_F(TroubledStore, ReadingMakesNothing) {
    EXPECT_EQ(Values(), "0 0");
    EXPECT_FALSE(fs::exists(State()));
    fs::create_directory(State());
    EXPECT_EQ(Values(), "0 0");
    EXPECT_TRUE(fs::is_empty(State()));
    folder.Write("state/configuration.db", "");
    EXPECT_EQ(Values(), "0 0");
    EXPECT_EQ(fs::file_size(File()), 0U) << "it was made, but not set up any more";
}

TEST_F(TroubledStore, AStoreThatMayOnlyBeReadIsReadWithTheLogOfAWriter) {
    std::string const state = folder.path + "/a%20b?c#d";
    for (bool const hasWriter : {false, true}) {
        SCOPED_TRACE(hasWriter);
        Begin(state, false);
        std::string const file = state + "/configuration.db";
        std::optional<Database> writer;
        if (hasWriter) {
            writer.emplace(file, 0);
            writer->Run("UPDATE setting SET running = '9'");
        }
        EXPECT_EQ(fs::exists(file + "-wal"), hasWriter);
        fs::permissions(file, fs::perms::owner_read);
        fs::permissions(state, fs::perms::owner_read | fs::perms::owner_exec);
        {
            PlainUser const user;
            EXPECT_EQ(Values(), hasWriter ? "9 3" : "4 3");
        }
        fs::permissions(state, fs::perms::owner_all);
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    }
}

// The log's values would be missed.
TEST_F(TroubledStore, AStoreThatMayOnlyBeReadIsNotReadPastALogWithoutItsIndex) {
    Begin(State(), false);
    Database writer(File(), 0);
    writer.Run("UPDATE setting SET running = '9'");
    std::string const copy = folder.path + "/copy";
    fs::create_directory(copy);
    fs::copy(File(), copy);
    fs::copy(File() + "-wal", copy);
    SetStateFolder(copy);
    fs::permissions(copy, fs::perms::owner_read | fs::perms::owner_exec);
    {
        PlainUser const user;
        int value = 4711;
        ExpectFailure([&] { return Cfg_GetBoolAttrValue("x", &value); }, copy + "/configuration.db",
                      "");
        EXPECT_EQ(value, 4711);
    }
    fs::permissions(copy, fs::perms::owner_all);
    EXPECT_EQ(Read("x"), 9);
}

TEST_F(TroubledStore, AFolderThatMayNotBeMadeIsNamed) {
    fs::permissions(folder.path, fs::perms::owner_read | fs::perms::owner_exec);
    {
        PlainUser const user;
        ExpectNoWriting(State(), "Permission denied");
        EXPECT_EQ(Values(), "0 0") << "the default";
        SetStateFolder(State() + "/deeper");
        ExpectNoWriting(State() + "/deeper", "Permission denied");
        SetStateFolder(State());
    }
    EXPECT_FALSE(fs::exists(State()));
    fs::permissions(folder.path, fs::perms::owner_all);
    ExpectUsable();
}

TEST_F(TroubledStore, AFileInThePlaceOfTheFolderIsNamedAndLeftAlone) {
    folder.Write("state", "text");
    ExpectFailures(State(), "Not a directory");
    EXPECT_EQ(fs::file_size(State()), 4U);
    fs::remove(State());
    ExpectUsable();
}

TEST_F(TroubledStore, AFolderThatIsTakenAwayIsMadeAnew) {
    Begin(State(), false);
    fs::remove_all(State());
    EXPECT_EQ(Values(), "0 0");
    ExpectUsable();
}

TEST_F(TroubledStore, TheFolderMayBeASymbolicLinkAndTheDatabaseMayNot) {
    fs::create_directory(folder.path + "/elsewhere");
    fs::create_directory_symlink(folder.path + "/elsewhere", State());
    ExpectUsable();
    std::string const database = folder.path + "/elsewhere/configuration.db";
    fs::rename(database, database + ".moved");
    fs::create_symlink(database + ".moved", database);
    ExpectFailures(database, "unable to open database file");
}

TEST_F(TroubledStore, AFileThatIsNoDatabaseIsNamedAndLeftAlone) {
    std::string const garbage(4096, 'x');
    std::string const header = std::string("SQLite format 3\0", 16) + garbage;
    for (auto const& [text, said] : std::vector<std::pair<std::string, std::string>>{
             {garbage, "file is not a database"}, {header, "file is not a database"}}) {
        folder.Write("state/configuration.db", text);
        ExpectFailures(File(), said);
        std::ifstream file(File(), std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), text);
    }
    fs::remove(File());
    ExpectUsable();
}

// The first page, which holds the table of contents, is whole.
TEST_F(TroubledStore, ADatabaseWhosePagesAreDamagedIsNamed) {
    Begin(State(), false);
    std::fstream file(File(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(4096).write(std::string(4096, 'x').data(), 4096);
    file.close();
    ExpectFailures(File(), "database disk image is malformed");
    fs::remove(File());
    ExpectUsable();
}

TEST_F(TroubledStore, ALockedDatabaseIsAFailureThatChangesNothing) {
    Begin(State(), false);
    {
        Database other(File(), 0);
        other.Run("BEGIN IMMEDIATE");
        for (auto const& call : std::vector<std::function<long()>>{
                 [] { return Cfg_SetAttrValue("x", "5"); }, [] { return ConfigUpdate("x=5"); }}) {
            std::string const log = Log([&] { EXPECT_EQ(call(), ConfigStatus_StoreFailed); });
            EXPECT_TRUE(IsEntryAbout(log, File())) << log;
            EXPECT_NE(log.find("configuration.db: database is locked"), std::string::npos) << log;
        }
        EXPECT_EQ(Values(), "4 3") << "reading goes on";
    }
    EXPECT_EQ(Values(), "4 3");
    ExpectUsable();
}

TEST_F(TroubledStore, ALockIsWaitedForBeforeTheDatabaseIsSetUpAndAfterwards) {
    SetStorePatience(60000);
    for (bool const isNew : {true, false}) {
        SCOPED_TRACE(isNew);
        TempFolder const place;
        Begin(place.path, isNew);
        Database other(place.path + "/configuration.db", 0);
        other.Run("BEGIN IMMEDIATE");
        whileWaiting = [&] { other.Run("COMMIT"); };
        EXPECT_EQ(ConfigUpdate("x=6"), 0);
        EXPECT_FALSE(whileWaiting) << "nothing was waited for";
        EXPECT_EQ(Values(), "6 6");
    }
}

}  // namespace
