// The capture channel as the system sees it: each call in its order, and each one refused.
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "device/device_fixture.hpp"
#include "device/system_calls.hpp"

using namespace Quillo;

namespace {

char const loaReqFile[] = "src/device/loa_req.cpp";

constexpr int closeErrors[] = {EBADF, EDQUOT, EINTR, EIO, ENOSPC};
constexpr int fcloseErrors[] = {EAGAIN, EBADF,  EDQUOT, EFBIG, EINTR,
                                EIO,    ENOMEM, ENOSPC, ENXIO, EPIPE};

std::string LogLine(std::string const& message) {
    return std::string("log error ") + loaReqFile + ": " + message;
}

class LoaReqSyscallsTest : public DeviceTest {
protected:
    // One whole request with the answer `written`.
    std::string Ask(std::string const& written) {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 0);
        EXPECT_EQ(std::fwrite(written.data(), 1, written.size(), app.out), written.size());
        return request.Finish();
    }

    SystemCalls calls;
};

TEST_F(LoaReqSyscallsTest, ARequestThatIsNeverOpenedMakesNoCall) {
    { LoaReq const request(app); }
    EXPECT_EQ(Platform().trace, Lines());
}

TEST_F(LoaReqSyscallsTest, AWholeRequestFreesThenClosesThenReads) {
    EXPECT_EQ(Ask("text"), "text");
    EXPECT_EQ(Platform().trace,
              (Lines{"pipe2", "fdopen write end, w", "loareq_initialize", "loareq_free",
                     "fclose stream", "read read end, 256: 4", "close read end"}));
}

TEST_F(LoaReqSyscallsTest, AGivenUpRequestClosesTheReadEndBeforeTheStream) {
    {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 0);
        std::fputs("never read", app.out);
    }
    EXPECT_EQ(Platform().trace, (Lines{"pipe2", "fdopen write end, w", "loareq_initialize",
                                       "close read end", "fclose stream"}));
}

TEST_F(LoaReqSyscallsTest, APipeThatIsRefusedLeavesNothingToClose) {
    for (int error : {EFAULT, EINVAL, EMFILE, ENFILE, ENOMEM}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        calls.pipeError = error;
        {
            LoaReq request(app);
            EXPECT_EQ(request.Init(), 1);
            EXPECT_EQ(app.out, serverOut);
            EXPECT_EQ(request.Finish(), "");
        }
        std::string const message = std::string("Init: pipe() failed - ") + std::strerror(error);
        EXPECT_EQ(Reports(),
                  (std::vector<Report>{{"error", loaReqFile, "%s: pipe() failed - %s", message}}));
        EXPECT_EQ(Platform().trace, (Lines{"pipe2", LogLine(message)}));
    }
}

TEST_F(LoaReqSyscallsTest, AStreamThatIsRefusedLeavesBothEndsToTheDestructor) {
    for (int error : {EBADF, EINVAL, EMFILE, ENOMEM}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        calls.fdopenError = error;
        {
            LoaReq request(app);
            EXPECT_EQ(request.Init(), 1);
            EXPECT_EQ(app.out, serverOut);
            EXPECT_EQ(Opened(), (std::set<int>{calls.readEnd, calls.writeEnd}));
            EXPECT_EQ(request.Finish(), "");
        }
        std::string const message = std::string("Init: fdopen() failed - ") + std::strerror(error);
        EXPECT_EQ(
            Reports(),
            (std::vector<Report>{{"error", loaReqFile, "%s: fdopen() failed - %s", message}}));
        EXPECT_EQ(Platform().trace, (Lines{"pipe2", "fdopen write end, w", LogLine(message),
                                           "close read end", "close write end"}));
    }
}

TEST_F(LoaReqSyscallsTest, AServiceThatDoesNotInitialiseLeavesReadEndAndStreamToTheDestructor) {
    Platform().initializeResult = 1;
    {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 1);
    }
    EXPECT_EQ(Platform().trace, (Lines{"pipe2", "fdopen write end, w", "loareq_initialize",
                                       LogLine("Init: loa_initialize_loareq() failed"),
                                       "close read end", "fclose stream"}));
}

TEST_F(LoaReqSyscallsTest, ReadingStopsAtTheFirstReadThatDoesNotFillAChunk) {
    struct {
        std::size_t size;
        Lines reads;
    } const rows[] = {
        {0, {"read read end, 256: 0"}},
        {1, {"read read end, 256: 1"}},
        {255, {"read read end, 256: 255"}},
        {256, {"read read end, 256: 256", "read read end, 256: 0"}},
        {300, {"read read end, 256: 256", "read read end, 256: 44"}},
        {512, {"read read end, 256: 256", "read read end, 256: 256", "read read end, 256: 0"}},
    };
    for (auto const& row : rows) {
        Platform() = RecordingPlatform();
        EXPECT_EQ(Ask(Pattern(row.size)), Pattern(row.size));
        Lines expected = {"pipe2", "fdopen write end, w", "loareq_initialize", "loareq_free",
                          "fclose stream"};
        expected.insert(expected.end(), row.reads.begin(), row.reads.end());
        expected.push_back("close read end");
        EXPECT_EQ(Platform().trace, expected);
    }
}

TEST_F(LoaReqSyscallsTest, AShortReadEndsTheAnswerThoughThePipeHoldsMore) {
    for (ssize_t count : {0, 1, 100, 255}) {
        calls.reads = {{ReadStep::Real, count}};
        EXPECT_EQ(Ask(Pattern(600)), Pattern(static_cast<std::size_t>(count)));
        calls.reads = {{ReadStep::Real, 256}, {ReadStep::Real, count}};
        EXPECT_EQ(Ask(Pattern(600)), Pattern(256 + static_cast<std::size_t>(count)));
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqSyscallsTest, APipeThatDoesNotTellItsStateIsReadAllTheSame) {
    for (int error : {EFAULT, EINTR, EINVAL, ENOMEM}) {
        calls.pollError = error;
        for (std::size_t size : {0U, 1U, 256U, 600U}) {
            EXPECT_EQ(Ask(Pattern(size)), Pattern(size)) << error;
        }
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqSyscallsTest, AStreamThatFailsToCloseIsGoneWithWhatItHadBuffered) {
    for (int error : fcloseErrors) {
        Platform() = RecordingPlatform();
        calls.fcloseError = error;
        EXPECT_EQ(Ask("text"), "");
        EXPECT_EQ(Platform().trace,
                  (Lines{"pipe2", "fdopen write end, w", "loareq_initialize", "loareq_free",
                         "fclose stream", "read read end, 256: 0", "close read end"}));
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened(), std::set<int>());
    }
    calls.fcloseError = 0;
    EXPECT_EQ(Ask("text"), "text");
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqSyscallsTest, ADescriptorThatFailsToCloseIsClosedOnce) {
    for (int error : closeErrors) {
        Platform() = RecordingPlatform();
        calls.closeError = error;
        EXPECT_EQ(Ask("text"), "text");
        Lines const& trace = Platform().trace;
        EXPECT_EQ(std::count(trace.begin(), trace.end(), "close read end"), 1);
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened(), std::set<int>());
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(LoaReqSyscallsTest, ARefusedStreamsEndsAreClosedOnceThoughThatFails) {
    calls.fdopenError = ENOMEM;
    for (int error : closeErrors) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        calls.closeError = error;
        {
            LoaReq request(app);
            EXPECT_EQ(request.Init(), 1);
        }
        std::string const message = std::string("Init: fdopen() failed - ") + std::strerror(ENOMEM);
        EXPECT_EQ(Platform().trace, (Lines{"pipe2", "fdopen write end, w", LogLine(message),
                                           "close read end", "close write end"}));
        EXPECT_EQ(Reports().size(), 1U);
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened(), std::set<int>());
    }
}

TEST_F(LoaReqSyscallsTest, AGivenUpRequestIsClosedOnceThoughThatFails) {
    for (int const initializeResult : {0, 1}) {
        for (int const fcloseError : fcloseErrors) {
            for (int const closeError : closeErrors) {
                Platform() = RecordingPlatform();
                Platform().initializeResult = initializeResult;
                calls.fcloseError = fcloseError;
                calls.closeError = closeError;
                {
                    LoaReq request(app);
                    EXPECT_EQ(request.Init(), initializeResult);
                    std::fputs("never read", app.out);
                }
                Lines const& trace = Platform().trace;
                ASSERT_GE(trace.size(), 2U);
                EXPECT_EQ(trace[trace.size() - 2], "close read end");
                EXPECT_EQ(trace.back(), "fclose stream");
                EXPECT_EQ(std::count(trace.begin(), trace.end(), "close read end"), 1);
                EXPECT_EQ(app.out, serverOut);
                EXPECT_EQ(Opened(), std::set<int>());
            }
        }
    }
}

// What one request gives whose reads go as scripted: the text, and the report.
struct ReadFailure {
    std::deque<ReadStep> reads;
    std::string text;
    std::string format;
    std::string message;
};

class LoaReqReadTest : public LoaReqSyscallsTest {
protected:
    void Expect(ReadFailure const& row) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        calls.reads = row.reads;
        EXPECT_EQ(Ask(Pattern(600)), row.text) << row.message;
        EXPECT_TRUE(calls.reads.empty());
        EXPECT_EQ(Reports(), (std::vector<Report>{{"error", loaReqFile, row.format, row.message}}));
        // Nothing is read behind the failure, and the read end is closed once.
        Lines const& trace = Platform().trace;
        ASSERT_GE(trace.size(), 2U);
        EXPECT_EQ(trace[trace.size() - 2], LogLine(row.message));
        EXPECT_EQ(trace.back(), "close read end");
        EXPECT_EQ(std::count(trace.begin(), trace.end(), "close read end"), 1);
    }
};

TEST_F(LoaReqReadTest, AFailedReadTruncatesTheAnswer) {
    ReadStep const whole = {ReadStep::Real, 256};
    for (int error : {EAGAIN, EBADF, EFAULT, EINTR, EINVAL, EIO, EISDIR}) {
        ReadStep const fails = {ReadStep::Fails, error};
        std::string const format = "%s: read() failed - %s (truncating result)";
        std::string const message =
            std::string("Finish: read() failed - ") + std::strerror(error) + " (truncating result)";
        Expect({{fails}, "", format, message});
        Expect({{whole, fails}, Pattern(256), format, message});
        Expect({{whole, whole, fails}, Pattern(512), format, message});
    }
}

TEST_F(LoaReqReadTest, ACountAboveAChunkTruncatesTheAnswer) {
    ReadStep const whole = {ReadStep::Real, 256};
    for (ssize_t count : {257, 300, 4096, 2147483647}) {
        ReadStep const claims = {ReadStep::Claims, count};
        std::string const format = "%s: Huh?  %d > %d";
        std::string const message = "Finish: Huh?  " + std::to_string(count) + " > 256";
        Expect({{claims}, "", format, message});
        Expect({{whole, claims}, Pattern(256), format, message});
    }
}

}  // namespace
