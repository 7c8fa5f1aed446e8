// The device log when the system does not take its entries.
#include <device_log.h>

#include <cerrno>
#include <string>

#include "platform/refused_calls_fixture.hpp"
#include "support/failing_memory.hpp"

namespace {

// Makes an entry for which there is no memory, which is written from a buffer on the stack.
void LogWithoutMemory() {
    FailingMemory::Allow(0);
    Log_SpecEntry(logSpecWarn, "here.cpp", 5, "%s", "an entry that takes memory from the heap");
    FailingMemory::AllowAll();
}

using RefusedLogTest = RefusedCallsTest;

// An interruption of some earlier call is still in errno.
TEST_F(RefusedLogTest, AWriteThatTakesNothingIsNotTriedForEver) {
    CapturedStderr const log;
    calls.writes = {0, -EBADF};
    errno = EINTR;
    LogWithoutMemory();
    EXPECT_EQ(calls.writes.size(), 1U);
    EXPECT_EQ(log.Text(), "");
}

}  // namespace
