// The capture channel as its caller and the service see it. What the system sees, and what happens
// when the system refuses, is tested in loa_req_syscalls_test.cpp.
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <type_traits>

#include "device/device_fixture.hpp"

namespace {

static_assert(!std::is_copy_constructible<LoaReq>::value, "a descriptor has one owner");
static_assert(!std::is_copy_assignable<LoaReq>::value, "a descriptor has one owner");
static_assert(!std::is_convertible<ZOV_AppData&, LoaReq>::value, "a request is made by name");

std::string Written(ZOV_AppData& app, std::string const& answer) {
    LoaReq request(app);
    EXPECT_EQ(request.Init(), 0);
    EXPECT_EQ(std::fwrite(answer.data(), 1, answer.size(), app.out), answer.size());
    return request.Finish();
}

bool IsReadEnd(int fd) {
    return (fcntl(fd, F_GETFL) & O_ACCMODE) == O_RDONLY;
}

class LoaReqTest : public DeviceTest {};

TEST_F(LoaReqTest, ConstructingOpensNothing) {
    LoaReq const request(app);
    EXPECT_EQ(Opened().size(), 0U);
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Platform().trace, Lines());
}

TEST_F(LoaReqTest, InitPutsAPipeInThePlaceOfTheOutputStream) {
    LoaReq request(app);
    EXPECT_EQ(request.Init(), 0);
    std::set<int> const ends = Opened();
    ASSERT_EQ(ends.size(), 2U);
    struct stat first;
    struct stat second;
    ASSERT_EQ(fstat(*ends.begin(), &first), 0);
    ASSERT_EQ(fstat(*ends.rbegin(), &second), 0);
    EXPECT_TRUE(S_ISFIFO(first.st_mode));
    EXPECT_EQ(first.st_ino, second.st_ino);
    EXPECT_NE(IsReadEnd(*ends.begin()), IsReadEnd(*ends.rbegin()));
    EXPECT_NE(app.out, serverOut);
    EXPECT_EQ(ends.count(fileno(app.out)), 1U);
    EXPECT_FALSE(IsReadEnd(fileno(app.out)));
}

TEST_F(LoaReqTest, BothEndsAreClosedOnExecAndNeitherIsNonBlocking) {
    LoaReq request(app);
    ASSERT_EQ(request.Init(), 0);
    ASSERT_EQ(Opened().size(), 2U);
    for (int fd : Opened()) {
        EXPECT_EQ(fcntl(fd, F_GETFD), FD_CLOEXEC);
        EXPECT_EQ(fcntl(fd, F_GETFL) & O_NONBLOCK, 0);
    }
}

TEST_F(LoaReqTest, TheDescriptor0IsClosedLikeAnyOther) {
    int const standardInput = dup(0);
    close(0);
    {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 0);
        EXPECT_EQ(fcntl(0, F_GETFD), FD_CLOEXEC) << "the read end is to be descriptor 0";
    }
    EXPECT_EQ(fcntl(0, F_GETFD), -1);
    if (standardInput != -1) {
        dup2(standardInput, 0);
        close(standardInput);
    }
}

TEST_F(LoaReqTest, TheServiceInitialisesEightClearedWordsAndFindsTheNewStream) {
    std::memset(app.loaState, 0xA5, sizeof app.loaState);
    std::strcpy(app.preferredLang, "de-de");
    app.uriArgs = "a=1";
    std::vector<std::uintptr_t> found;
    std::FILE* streamFound = nullptr;
    ZOV_AppData* recordFound = nullptr;
    Platform().onInitialize = [&](ZOV_AppData* record) {
        recordFound = record;
        streamFound = record->out;
        found.assign(record->loaState, record->loaState + 8);
        record->loaState[0] = 11;
        record->loaState[7] = 77;
    };
    LoaReq request(app);
    EXPECT_EQ(request.Init(), 0);
    EXPECT_EQ(recordFound, &app);
    EXPECT_EQ(found, std::vector<std::uintptr_t>(8, 0));
    EXPECT_NE(streamFound, serverOut);
    EXPECT_EQ(streamFound, app.out);
    EXPECT_EQ(app.loaState[0], 11U);
    EXPECT_EQ(app.loaState[7], 77U);
    EXPECT_STREQ(app.preferredLang, "de-de");
    EXPECT_STREQ(app.uriArgs, "a=1");
}

TEST_F(LoaReqTest, AServiceThatDoesNotInitialiseMakesInitFail) {
    for (int result : {1, -1, 256, INT_MAX, INT_MIN}) {
        Platform() = RecordingPlatform();
        Quillo::debugMsgs = Quillo::Div();
        Platform().initializeResult = result;
        {
            LoaReq request(app);
            EXPECT_EQ(request.Init(), 1) << result;
            EXPECT_EQ(Opened().size(), 2U);
        }
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened().size(), 0U);
        EXPECT_EQ(Reports(), (std::vector<Report>{{"error", "src/device/loa_req.cpp",
                                                   "%s: loa_initialize_loareq() failed",
                                                   "Init: loa_initialize_loareq() failed"}}));
        EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize",
                                           "log error src/device/loa_req.cpp: "
                                           "Init: loa_initialize_loareq() failed"}));
    }
}

TEST_F(LoaReqTest, AnswersOfEverySizeUpToThePipesComeBackWhole) {
    for (std::size_t size : {0U, 1U, 2U, 255U, 256U, 257U, 300U, 511U, 512U, 513U, 767U, 768U, 769U,
                             999U, 4095U, 4096U, 4097U, 65536U}) {
        std::string const answer = Pattern(size);
        EXPECT_EQ(Written(app, answer), answer) << size;
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqTest, AnAnswerEndsAtItsFirstNul) {
    struct {
        std::string answer;
        std::string text;
    } const rows[] = {
        {std::string("\0", 1), ""},
        {std::string("\0abc", 4), ""},
        {std::string("abc\0", 4), "abc"},
        {std::string("abc\0def\0ghi", 11), "abc"},
        {Pattern(255) + '\0', Pattern(255)},
        {Pattern(256) + '\0' + "x", Pattern(256)},
        {Pattern(300) + '\0' + Pattern(700), Pattern(300)},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Written(app, row.answer), row.text);
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqTest, EveryOtherByteComesBackAsItIs) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(Written(app, bytes + bytes), bytes + bytes);
}

TEST_F(LoaReqTest, FinishEndsTheRequestOnceAndClosesTheWriteEndAlone) {
    LoaReq request(app);
    ASSERT_EQ(request.Init(), 0);
    std::fputs("answer", app.out);
    EXPECT_EQ(request.Finish(), "answer");
    ASSERT_EQ(Opened().size(), 1U);
    EXPECT_TRUE(IsReadEnd(*Opened().begin()));
    EXPECT_NE(app.out, serverOut) << "the output stream is the destructor's to put back";
    EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize", "loareq_free"}));
}

TEST_F(LoaReqTest, ASecondFinishGivesNothingAndAsksThePlatformNothing) {
    LoaReq request(app);
    ASSERT_EQ(request.Init(), 0);
    std::fputs("answer", app.out);
    EXPECT_EQ(request.Finish(), "answer");
    EXPECT_EQ(request.Finish(), "");
    EXPECT_EQ(request.Finish(), "");
    EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize", "loareq_free"}));
}

TEST_F(LoaReqTest, AFinishWithoutInitGivesNothingAndAsksThePlatformNothing) {
    LoaReq request(app);
    EXPECT_EQ(request.Finish(), "");
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Platform().trace, Lines());
}

TEST_F(LoaReqTest, ARequestThatIsGivenUpIsNotFreed) {
    {
        LoaReq request(app);
        ASSERT_EQ(request.Init(), 0);
        std::fputs("never read", app.out);
    }
    EXPECT_EQ(Opened().size(), 0U);
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Platform().trace, Lines{"loareq_initialize"});
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqTest, TheStreamPutBackIsTheOneFoundWhenTheRequestWasMade) {
    {
        LoaReq request(app);
        app.out = nullptr;
        ASSERT_EQ(request.Init(), 0);
        EXPECT_NE(app.out, nullptr);
    }
    EXPECT_EQ(app.out, serverOut);
    {
        LoaReq const unused(app);
        app.out = nullptr;
    }
    EXPECT_EQ(app.out, serverOut);
}

TEST_F(LoaReqTest, ARequestWithinARequestGivesTheOuterStreamBack) {
    LoaReq outer(app);
    ASSERT_EQ(outer.Init(), 0);
    std::FILE* const outerOut = app.out;
    std::fputs("before ", app.out);
    EXPECT_EQ(Written(app, "inner"), "inner");
    EXPECT_EQ(app.out, outerOut);
    std::fputs("after", app.out);
    EXPECT_EQ(outer.Finish(), "before after");
}

TEST_F(LoaReqTest, AnExceptionBetweenInitAndFinishLeavesNothingBehind) {
    EXPECT_THROW(
        {
            LoaReq request(app);
            EXPECT_EQ(request.Init(), 0);
            std::fputs("never read", app.out);
            throw std::runtime_error("given up");
        },
        std::runtime_error);
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Opened().size(), 0U);
}

TEST_F(LoaReqTest, TextNobodyWillReadIsDiscarded) {
    int reader = -1;
    {
        LoaReq request(app);
        ASSERT_EQ(request.Init(), 0);
        for (int fd : Opened()) {
            reader = IsReadEnd(fd) ? dup(fd) : reader;
        }
        std::fputs("buffered", app.out);
    }
    ASSERT_NE(reader, -1);
    char byte;
    EXPECT_EQ(read(reader, &byte, 1), 0);
    close(reader);
}

// Ends with 0 when no signal ended it first.
void GiveUpRequest(ZOV_AppData& app, std::string const& text) {
    signal(SIGPIPE, SIG_DFL);
    {
        LoaReq request(app);
        request.Init();
        std::fwrite(text.data(), 1, text.size(), app.out);
    }
    _exit(0);
}

typedef LoaReqTest LoaReqDeathTest;

TEST_F(LoaReqDeathTest, ARequestThatIsGivenUpRaisesNoSigpipe) {
    for (std::size_t size : {1U, 300U, 4095U, 4097U, 5000U, 65000U}) {
        EXPECT_EXIT(GiveUpRequest(app, Pattern(size)), ::testing::ExitedWithCode(0), "") << size;
    }
    Platform().initializeResult = 1;
    EXPECT_EXIT(GiveUpRequest(app, "text"), ::testing::ExitedWithCode(0), "");
}

}  // namespace
