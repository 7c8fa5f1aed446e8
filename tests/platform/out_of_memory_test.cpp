// Memory runs out at each allocation in turn.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <utility>

#include "host/contract.hpp"
#include "host/request_state.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "support/failing_memory.hpp"

namespace {

char const longName[] = "a name that is too long to be kept without memory from the heap";

// Fails the first allocation of `work`, the second and so on, up to a run in which all succeed;
// hands `check` whether one failed.
template <class Work, class Check>
int FailEach(Work work, Check check) {
    for (int allowed = 0;; ++allowed) {
        FailingMemory::Allow(allowed);
        work();
        FailingMemory::AllowAll();
        check(FailingMemory::hasFailed);
        if (!FailingMemory::hasFailed) {
            return allowed;
        }
    }
}

TEST(OutOfMemory, TheLogStillWritesTheEntry) {
    int const failures = FailEach(
        [] { Log_SpecEntry(logSpecInfo, "fi\nle", 1, "mess\nage %s", longName); }, [](bool) {});
    EXPECT_GT(failures, 1);
    FailEach(
        [] {
            CapturedStderr const captured;
            Log_SpecEntry(logSpecWarn, "fi\nle", 1, "mess\nage %s", longName);
            FailingMemory::Pause const pause;
            std::string const text = captured.Text();
            std::string const end =
                "] warning fi\\nle:1: mess\\nage " + std::string(longName) + "\n";
            ASSERT_GT(text.size(), end.size());
            EXPECT_EQ(text.substr(text.size() - end.size()), end);
            EXPECT_EQ(text.find('\n'), text.size() - 1);
        },
        [](bool) {});
}

TEST(OutOfMemory, TheLogCutsAnEntryThatIsTooLongForItsSpareBuffer) {
    std::string const message(100000, '\n');
    std::string const file(5000, 'f');
    CapturedStderr const captured;
    FailingMemory::Allow(0);
    Log_SpecEntry(logSpecError, file.c_str(), 7, "%s", message.c_str());
    FailingMemory::AllowAll();
    std::string const text = captured.Text();
    EXPECT_NE(text.find(" error fff"), std::string::npos);
    EXPECT_NE(text.find("fff:7: \\n\\n"), std::string::npos);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(OutOfMemory, TheLogTellsTheTimeAsEverThoughInWholeSeconds) {
    CapturedStderr const captured;
    FailingMemory::Allow(0);
    Log_SpecEntry(logSpecError, "f", 7, "%s", longName);
    FailingMemory::AllowAll();
    std::regex const form(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d \[\d+\] error f:7: )" +
                          std::string(longName) + "\n");
    EXPECT_TRUE(std::regex_match(captured.Text(), form)) << captured.Text();
}

TEST(OutOfMemory, ARequestBeginsOrSaysThatItDoesNot) {
    ZOV_AppData app{};
    CapturedStderr const captured;
    int result = 0;
    int const failures =
        FailEach([&] { result = loareq_initialize(&app); },
                 [&](bool hasFailed) {
                     EXPECT_EQ(result != 0, hasFailed);
                     EXPECT_EQ(QuilloHost::FindRequest(&app) == nullptr, hasFailed);
                     EXPECT_EQ(app.loaState[0] == 0, hasFailed);
                     loareq_free(&app);
                 });
    EXPECT_GE(failures, 2);
    EXPECT_NE(captured.Text().find("loareq_initialize: out of memory\n"), std::string::npos);
}

TEST(OutOfMemory, AStateLeftBehindIsReleasedThoughTheNextRequestCannotBegin) {
    ZOV_AppData app{};
    CapturedStderr const captured;
    std::size_t const before = QuilloHost::CountRequests();
    ASSERT_EQ(loareq_initialize(&app), 0);
    FailingMemory::Allow(0);
    EXPECT_NE(loareq_initialize(&app), 0);
    FailingMemory::AllowAll();
    EXPECT_EQ(QuilloHost::CountRequests(), before);
}

TEST(OutOfMemory, ALostSettingFailsTheFormatterRatherThanChangeTheAnswer) {
    for (auto* set :
         {loareq_set_object, loareq_set_attrs, loareq_set_format, loareq_set_default_val,
          loareq_set_fnName, loareq_set_fnArg, loareq_set_context}) {
        CapturedStderr const captured;
        CapturePipe pipe;
        ZOV_AppData app{{}, nullptr, pipe.out, {}};
        ASSERT_EQ(loareq_initialize(&app), 0);
        set(&app, "short");
        FailingMemory::Allow(0);
        set(&app, longName);
        FailingMemory::AllowAll();
        EXPECT_EQ(app.loaState[6], 0U);
        EXPECT_NE(format_sys_request(&app), 0);
        loareq_free(&app);
        EXPECT_EQ(pipe.Finish(), "");
        EXPECT_NE(captured.Text().find("format_sys_request: memory ran out"), std::string::npos);
    }
}

// The answer of `object` comes whole, or the formatter fails with a log entry.
void CheckFormatter(char const* object, std::string const& expected) {
    int const failures = FailEach(
        [&] {
            int const allowed = std::exchange(FailingMemory::allowance, -1);
            CapturedStderr const captured;
            CapturePipe pipe;
            ZOV_AppData app{{}, nullptr, pipe.out, {}};
            ASSERT_EQ(loareq_initialize(&app), 0);
            loareq_set_object(&app, object);
            loareq_set_attrs(&app, "total pid");
            loareq_set_format(&app, "%1 and %2, in a line that needs the heap\n");
            loareq_set_default_val(&app, "Unavailable, whatever the reason was");
            FailingMemory::allowance = allowed;
            int const result = format_sys_request(&app);
            FailingMemory::allowance = -1;
            loareq_free(&app);
            EXPECT_EQ(result != 0, FailingMemory::hasFailed);
            EXPECT_EQ(pipe.Finish(), FailingMemory::hasFailed ? "" : expected);
            EXPECT_EQ(!captured.Text().empty(), FailingMemory::hasFailed) << captured.Text();
        },
        [](bool) {});
    EXPECT_GT(failures, 10);
}

TEST(OutOfMemory, AFormatterAnswersWholeOrFails) {
    FixtureMachine machine;
    machine.Write("proc/meminfo", "MemTotal: 2 kB\n");
    machine.Write("proc/7/stat", "7 (x) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 3 0 5 6 7 8\n");
    std::string const fallback = "Unavailable, whatever the reason was";
    CheckFormatter("memory", "2048 and " + fallback + ", in a line that needs the heap\n");
    CheckFormatter("processes", fallback + " and 7, in a line that needs the heap\n");
}

}  // namespace
