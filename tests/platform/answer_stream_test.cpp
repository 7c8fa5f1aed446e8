#include "host/answer_stream.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/plain_user.hpp"
#include "support/flushed_text.hpp"
#include "support/hang_guard.hpp"

namespace {

using QuilloHost::WriteAnswer;

std::string Text(std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += "line " + std::to_string(text.size()) + '\n';
    }
    return text.substr(0, size);
}

std::size_t LargestPipe() {
    std::size_t size = 0;
    std::ifstream("/proc/sys/fs/pipe-max-size") >> size;
    return size;
}

std::size_t PageSize() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

// Pipes that cannot be enlarged any more: an answer that does not fit would block.
class LargePipe : public testing::Test {
protected:
    LargePipe() : size(LargestPipe()) {
        EXPECT_TRUE(pipe.SetCapacity(size));
        EXPECT_EQ(pipe.Capacity(), size);
    }

    PlainUser const user;
    CapturePipe pipe;
    std::size_t const size;
};

TEST(SmallPipe, TakesAnAnswerOfExactlyItsSize) {
    CapturePipe pipe;
    std::size_t const size = pipe.Capacity();
    EXPECT_TRUE(WriteAnswer(pipe.out, Text(size), "thing"));
    EXPECT_EQ(pipe.Capacity(), size);
    EXPECT_EQ(pipe.Finish(), Text(size));
}

TEST(SmallPipe, IsEnlargedForALargerAnswer) {
    for (std::size_t const more : {std::size_t{1}, std::size_t{100000}}) {
        CapturePipe pipe;
        std::size_t const size = pipe.Capacity() + more;
        EXPECT_TRUE(WriteAnswer(pipe.out, Text(size), "thing"));
        EXPECT_GE(pipe.Capacity(), size);
        EXPECT_EQ(pipe.Finish(), Text(size));
    }
}

TEST(SmallPipe, IsEnlargedForWhatIsAheadOfTheAnswer) {
    CapturePipe pipe;
    std::size_t const size = pipe.Capacity();
    std::fputs("in the pipe,", pipe.out);
    std::fflush(pipe.out);
    std::fputs("in the buffer,", pipe.out);
    EXPECT_TRUE(WriteAnswer(pipe.out, Text(size), "thing"));
    EXPECT_EQ(pipe.Finish(), "in the pipe,in the buffer," + Text(size));
}

TEST(SmallPipe, TakesAnAnswerWhateverTheStreamsBuffer) {
    for (int const mode : {_IOFBF, _IOLBF, _IONBF}) {
        CapturePipe pipe;
        char buffer[100];
        std::setvbuf(pipe.out, mode == _IONBF ? nullptr : buffer, mode, sizeof buffer);
        PlainUser const user;
        std::string const answer = Text(pipe.Capacity());
        EXPECT_TRUE(WriteAnswer(pipe.out, answer, "thing"));
        EXPECT_EQ(pipe.Finish(), answer);
    }
}

TEST_F(LargePipe, TakesAnAnswerOfExactlyItsSize) {
    EXPECT_TRUE(WriteAnswer(pipe.out, Text(size), "thing"));
    EXPECT_EQ(pipe.Finish(), Text(size));
}

TEST_F(LargePipe, IsLeftAloneByAnAnswerThatDoesNotFit) {
    CapturedStderr const captured;
    EXPECT_FALSE(WriteAnswer(pipe.out, Text(size + 1), "thing"));
    EXPECT_EQ(pipe.Unread(), 0U);
    std::string const entry = "thing: the answer takes " + std::to_string(size + 1) +
                              " bytes, and the pipe has room for " + std::to_string(size) + ": ask";
    EXPECT_NE(captured.Text().find(entry), std::string::npos) << captured.Text();
}

TEST_F(LargePipe, CountsWhatTheStreamHasBuffered) {
    CapturedStderr const captured;
    std::fputs("b", pipe.out);
    EXPECT_FALSE(WriteAnswer(pipe.out, Text(size), "thing"));
    EXPECT_EQ(pipe.Unread(), 0U);
    EXPECT_TRUE(WriteAnswer(pipe.out, Text(size - PageSize()), "thing"));
    EXPECT_EQ(pipe.Finish(), "b" + Text(size - PageSize()));
}

TEST_F(LargePipe, CountsWhatNobodyHasReadYet) {
    CapturedStderr const captured;
    std::fputs("u", pipe.out);
    std::fflush(pipe.out);
    EXPECT_FALSE(WriteAnswer(pipe.out, Text(size), "thing"));
    EXPECT_EQ(pipe.Unread(), 1U);
    EXPECT_TRUE(WriteAnswer(pipe.out, Text(size - PageSize()), "thing"));
    EXPECT_EQ(pipe.Finish(), "u" + Text(size - PageSize()));
}

// Each of these writes begins a page of its own, so half the pages are taken by a third of the
// bytes.
TEST_F(LargePipe, CountsPagesThatAreFilledInPart) {
    CapturedStderr const captured;
    std::size_t const pages = size / PageSize();
    std::string const part = Text(PageSize() * 2 / 3);
    std::setvbuf(pipe.out, nullptr, _IONBF, 0);
    for (std::size_t i = 0; i < pages / 2; ++i) {
        std::fwrite(part.data(), 1, part.size(), pipe.out);
    }
    std::size_t const unread = pipe.Unread();
    EXPECT_EQ(unread, part.size() * (pages / 2));
    EXPECT_FALSE(WriteAnswer(pipe.out, Text(size - unread - PageSize()), "thing"));
    EXPECT_EQ(pipe.Unread(), unread);
}

TEST_F(LargePipe, CountsAFirstPageThatIsReadInPart) {
    CapturedStderr const captured;
    std::string const two = Text(2 * PageSize());
    std::fwrite(two.data(), 1, two.size(), pipe.out);
    std::fflush(pipe.out);
    pipe.ReadSome(PageSize() - 1);  // a page and a byte are left, in two pages
    EXPECT_FALSE(WriteAnswer(pipe.out, Text(size - PageSize() - 1), "thing"));
    EXPECT_EQ(pipe.Unread(), PageSize() + 1);
}

// A pipe that makes its writer wait when it is full, and that nobody reads before the answer is
// written.
class BlockingPipe {
public:
    explicit BlockingPipe(std::size_t capacity) {
        EXPECT_TRUE(pipe.SetCapacity(capacity));
        EXPECT_EQ(fcntl(fileno(pipe.out), F_GETFL) & O_NONBLOCK, 0);
    }

    // The answer is written behind `ahead` as a whole, or there is an entry and none of it.
    void Expect(std::string const& ahead, Flush flush, std::string const& answer) {
        CapturedStderr const captured;
        WriteFlushed(pipe.out, ahead, flush);
        bool const isWritten = WriteAnswer(pipe.out, answer, "thing");
        bool const isMuch = answer.size() > LargestPipe() / 2;
        EXPECT_TRUE(isWritten || isMuch) << captured.Text();
        if (ahead.empty()) {
            EXPECT_EQ(isWritten, answer.size() <= LargestPipe());
        }
        std::string const entry = "thing: the answer takes " + std::to_string(answer.size());
        EXPECT_EQ(captured.Text().find(entry) == std::string::npos, isWritten) << captured.Text();
        EXPECT_TRUE(pipe.Finish() == ahead + (isWritten ? answer : ""));
    }

private:
    HangGuard const guard;
    CapturePipe pipe;
};

TEST(FullPipe, TakesAnAnswerWholeOrNotAtAll) {
    constexpr std::size_t mebibyte = std::size_t{1024} * 1024;
    PlainUser const user;
    for (std::size_t const capacity : {std::size_t{4096}, std::size_t{65536}, mebibyte}) {
        for (std::size_t const size :
             {std::size_t{0}, std::size_t{1}, capacity - 1, capacity, capacity + 1, mebibyte}) {
            for (std::size_t const ahead : {0U, 1U, 192U, 4096U}) {
                for (Flush const flush : everyFlush) {
                    SCOPED_TRACE(testing::Message()
                                 << size << " bytes behind " << ahead << ", pipe of " << capacity
                                 << ", flush " << static_cast<int>(flush));
                    BlockingPipe(capacity).Expect(LinesOf(ahead), flush, Text(size));
                }
            }
        }
    }
}

TEST(AnswerStream, WritesNothingForAnEmptyAnswer) {
    CapturePipe pipe;
    EXPECT_TRUE(WriteAnswer(pipe.out, "", "thing"));
    EXPECT_EQ(pipe.Unread(), 0U);
}

TEST(AnswerStream, LeavesNothingInTheStreamsBuffer) {
    CapturePipe pipe;
    std::fputs("before,", pipe.out);
    EXPECT_TRUE(WriteAnswer(pipe.out, "answer", "thing"));
    EXPECT_EQ(pipe.Unread(), 13U);
    std::FILE* const file = std::tmpfile();
    EXPECT_TRUE(WriteAnswer(file, "answer", "thing"));
    EXPECT_EQ(lseek(fileno(file), 0, SEEK_END), 6);
    std::fclose(file);
}

TEST(AnswerStream, WritesToAStreamThatIsNoPipe) {
    std::string const answer = std::string("a\0b", 3) + Text(200000);
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const memory = open_memstream(&text, &size);
    std::fputs("before,", memory);
    EXPECT_TRUE(WriteAnswer(memory, answer, "thing"));
    std::fclose(memory);
    EXPECT_EQ(std::string(text, size), "before," + answer);
    std::free(text);
}

TEST(AnswerStream, LogsAWriteErrorWithItsReason) {
    CapturedStderr const captured;
    std::FILE* const full = std::fopen("/dev/full", "w");
    ASSERT_NE(full, nullptr);
    EXPECT_FALSE(WriteAnswer(full, "answer", "thing"));
    std::fclose(full);
    EXPECT_NE(captured.Text().find("thing: the answer could not be written - No space"),
              std::string::npos)
        << captured.Text();
}

TEST(AnswerStream, LogsABrokenPipe) {
    CapturedStderr const captured;
    auto* const before = std::signal(SIGPIPE, SIG_IGN);
    for (char const* buffered : {"", "buffered"}) {
        CapturePipe pipe;
        pipe.CloseReadEnd();
        std::fputs(buffered, pipe.out);
        EXPECT_FALSE(WriteAnswer(pipe.out, "answer", "thing"));
    }
    std::signal(SIGPIPE, before);
    EXPECT_NE(captured.Text().find("Broken pipe"), std::string::npos) << captured.Text();
}

TEST(AnswerStream, LogsAMissingOutput) {
    CapturedStderr const captured;
    EXPECT_FALSE(WriteAnswer(nullptr, "answer", "thing"));
    EXPECT_NE(captured.Text().find("thing: there is no output\n"), std::string::npos);
}

}  // namespace
