// An answer of the attribute service when the system refuses a call.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "host/answer_stream.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/refused_calls_fixture.hpp"

using namespace QuilloHost;

namespace {

// What a stream takes that is no pipe: so many bytes.
struct Sink {
    std::string taken;
    std::size_t room;
    int error;
};

ssize_t Take(void* cookie, char const* bytes, std::size_t size) {
    Sink& sink = *static_cast<Sink*>(cookie);
    std::size_t const count = std::min(size, sink.room - sink.taken.size());
    sink.taken.append(bytes, count);
    errno = count < size ? sink.error : errno;
    return static_cast<ssize_t>(count);
}

using RefusedAnswersTest = RefusedCallsTest;

TEST_F(RefusedAnswersTest, AnAnswerIsWrittenOnThroughShortWritesAndInterruptions) {
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

TEST_F(RefusedAnswersTest, AWriteThatFailsIsReportedWithTheReason) {
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

TEST_F(RefusedAnswersTest, AWriteThatTakesNothingIsNotTriedForEver) {
    CapturedStderr const log;
    CapturePipe pipe;
    calls.writes = {0, -EBADF};
    EXPECT_FALSE(WriteAnswer(pipe.out, "the answer", "thing"));
    EXPECT_EQ(calls.writes.size(), 1U);
    ExpectReason(log, EIO);
}

TEST_F(RefusedAnswersTest, AStreamThatIsNoPipeTakesTheAnswerWholeOrTheReasonIsReported) {
    std::string const answer(20000, 'a');
    std::string const whole = "before," + answer;
    for (int error : {EAGAIN, EBADF, EDQUOT, EFBIG, EINTR, EIO, ENOSPC, ENXIO, EPERM, EPIPE}) {
        for (std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{4096},
                                 std::size_t{8192}, whole.size() - 1, whole.size()}) {
            CapturedStderr const log;
            Sink sink{"", room, error};
            std::FILE* const out = fopencookie(&sink, "w", {nullptr, Take, nullptr, nullptr});
            std::fputs("before,", out);
            bool const isWhole = room == whole.size();
            EXPECT_EQ(WriteAnswer(out, answer, "thing"), isWhole) << error << " " << room;
            EXPECT_EQ(sink.taken, whole.substr(0, room));
            EXPECT_EQ(log.Text().empty(), isWhole);
            if (!isWhole) {
                ExpectReason(log, error);
            }
            std::fclose(out);
        }
    }
}

TEST_F(RefusedAnswersTest, APipeThatCannotBeEnlargedTakesNoLargerAnswer) {
    for (int error : {EBUSY, ENOMEM, EPERM}) {
        auto const check = [&](auto const& isRefused) {
            CapturedStderr const log;
            CapturePipe pipe;
            std::string const larger(pipe.Capacity() + 1, 'a');
            EXPECT_EQ(WriteAnswer(pipe.out, larger, "thing"), !isRefused(0));
            EXPECT_EQ(pipe.Unread(), isRefused(0) ? 0 : larger.size());
            EXPECT_EQ(log.Text().find("and the pipe has room for") != std::string::npos,
                      isRefused(0))
                << log.Text();
        };
        EXPECT_EQ(RefuseEach("F_SETPIPE_SZ", error, check), 1);
        Refuse("F_SETPIPE_SZ", {error});
        CapturePipe pipe;
        EXPECT_TRUE(WriteAnswer(pipe.out, std::string(pipe.Capacity(), 'a'), "thing"));
    }
}

TEST_F(RefusedAnswersTest, APipeThatDoesNotTellItsSizeIsTakenForAFullOne) {
    for (int error : {EBADF, EINVAL}) {
        auto const check = [&](auto const& isRefused) {
            CapturePipe pipe;
            EXPECT_TRUE(WriteAnswer(pipe.out, "it is enlarged,", "thing"));
            EXPECT_EQ(pipe.Finish(), "it is enlarged,");
            EXPECT_EQ(calls.hasFailed, isRefused(0));
        };
        EXPECT_EQ(RefuseEach("F_GETPIPE_SZ", error, check), 1);
        CapturedStderr const log;
        CapturePipe pipe;
        calls.refusals = {{"F_GETPIPE_SZ", {error}}, {"F_SETPIPE_SZ", {EPERM}}};
        EXPECT_FALSE(WriteAnswer(pipe.out, "answer", "thing"));
        EXPECT_EQ(pipe.Finish(), "");
        EXPECT_NE(log.Text().find("the pipe has room for 0"), std::string::npos) << log.Text();
        calls.refusals.clear();
    }
}

TEST_F(RefusedAnswersTest, AnOutputThatDoesNotTellWhatItIsGetsTheAnswerAllTheSame) {
    auto const check = [](auto const&) {
        CapturePipe pipe;
        EXPECT_TRUE(WriteAnswer(pipe.out, "answer", "thing"));
        EXPECT_EQ(pipe.Finish(), "answer");
    };
    for (int error : {EBADF, EFAULT, EINVAL, EIO, ENOMEM, ENOTTY, EOVERFLOW}) {
        EXPECT_EQ(RefuseEach("fstat", error, check), 2);
        EXPECT_EQ(RefuseEach("ioctl", error, check), 1);
    }
}

}  // namespace
