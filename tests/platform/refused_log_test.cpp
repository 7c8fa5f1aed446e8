// The device log when the system does not take its entries.
#include <device_log.h>

#include <algorithm>
#include <cerrno>
#include <deque>
#include <string>
#include <vector>

#include "platform/refused_calls_fixture.hpp"
#include "support/failing_memory.hpp"

namespace {

// With memory and without, which writes the entry from a buffer on the stack.
class RefusedLogTest : public RefusedCallsTest, public testing::WithParamInterface<bool> {
protected:
    // Makes an entry, and refuses the first of its writes.
    void Log(char const* message, std::deque<ssize_t> const& writes) {
        calls.logWrites = writes;
        FailingMemory::Allow(GetParam() ? -1 : 0);
        Log_SpecEntry(logSpecWarn, "here.cpp", 5, "%s, in words that take memory", message);
        FailingMemory::AllowAll();
        EXPECT_TRUE(calls.logWrites.empty()) << calls.logWrites.size() << " were not come to";
    }

    // Whether `line` is a whole entry.
    static void ExpectEntry(std::string const& line, std::string const& message) {
        std::string const end = " warning here.cpp:5: " + message + ", in words that take memory\n";
        ASSERT_GT(line.size(), end.size());
        EXPECT_EQ(line.substr(line.size() - end.size()), end);
        EXPECT_EQ(line.substr(0, 2), "20") << "the year";
        EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << line;
    }

    static std::vector<int> Errors() {
        return {EAGAIN, EBADF, EDQUOT, EFBIG, EIO, ENOSPC, EPERM, EPIPE};
    }
};

INSTANTIATE_TEST_SUITE_P(Memory, RefusedLogTest, testing::Values(true, false));

TEST_P(RefusedLogTest, AnEntryIsWrittenOnThroughShortWritesAndInterruptions) {
    for (std::deque<ssize_t> const& writes : std::vector<std::deque<ssize_t>>{
             {1}, {-EINTR}, {-EINTR, -EINTR, 20, -EINTR, 1, 1}, {60, -EINTR}}) {
        CapturedStderr const log;
        Log("first", writes);
        ExpectEntry(log.Text(), "first");
    }
}

TEST_P(RefusedLogTest, AnEntryThatIsNotTakenIsLostAsAWhole) {
    for (int error : Errors()) {
        for (std::deque<ssize_t> const& writes :
             std::vector<std::deque<ssize_t>>{{-error}, {-EINTR, -error}}) {
            CapturedStderr const log;
            Log("first", writes);
            EXPECT_EQ(log.Text(), "");
            Log("second", {});
            ExpectEntry(log.Text(), "second");
        }
    }
}

TEST_P(RefusedLogTest, AnEntryThatIsTakenInPartIsCutAndTheNextBeginsALine) {
    for (int error : Errors()) {
        CapturedStderr const log;
        Log("first", {2, 1, -error});
        ASSERT_EQ(log.Text().size(), 3U);
        Log("second", {});
        EXPECT_EQ(log.Text()[3], '\n');
        ExpectEntry(log.Text().substr(4), "second");
        Log("third", {});
        std::string const text = log.Text();
        ExpectEntry(text.substr(text.find('\n', 4) + 1), "third");
    }
}

TEST_P(RefusedLogTest, AnEntryIsLostWhoseLineCannotBeBegun) {
    for (int error : Errors()) {
        CapturedStderr const log;
        Log("first", {3, -error});
        Log("second", {-error});
        EXPECT_EQ(log.Text().size(), 3U);
        Log("third", {1, -error});
        EXPECT_EQ(log.Text().substr(3), "\n");
        Log("fourth", {});
        ExpectEntry(log.Text().substr(4), "fourth");
    }
}

// An interruption of some earlier call is still in errno.
TEST_P(RefusedLogTest, AWriteThatTakesNothingIsNotTriedForEver) {
    CapturedStderr const log;
    calls.logWrites = {0, -EBADF};
    errno = EINTR;
    FailingMemory::Allow(GetParam() ? -1 : 0);
    Log_SpecEntry(logSpecWarn, "here.cpp", 5, "%s", "an entry that takes memory from the heap");
    FailingMemory::AllowAll();
    EXPECT_EQ(calls.logWrites.size(), 1U);
    EXPECT_EQ(log.Text(), "");
}

}  // namespace
