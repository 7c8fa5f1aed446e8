// The object "log", on a file that stands in the place of standard error.
#include <device_log.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "host/sys/log_line.hpp"
#include "host/sys/sys_objects.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"

namespace {

using QuilloHost::FindInLog;
using QuilloHost::HoldsText;
using QuilloHost::LogLine;
using QuilloHost::ParseLogLine;
using QuilloHost::ReadLog;

std::string const mark = "2024-05-01T12:30:05.123+02:00 [7] ";

// A machine whose log holds `text`.
struct LoggingMachine : FixtureMachine {
    explicit LoggingMachine(std::string const& text) { Write("proc/self/fd/2", text); }
};

std::string Parsed(std::string const& line) {
    LogLine const parsed = ParseLogLine(line);
    return parsed.time + "|" + parsed.process + "|" + parsed.level + "|" + parsed.source + "|" +
           parsed.text;
}

// The last column of every record.
std::string Texts(std::string const& sought) {
    QuilloHost::Table const table = *FindInLog(sought);
    std::string texts;
    for (QuilloHost::Record const& record : table.records) {
        texts += *record[5] + ";";
    }
    return texts;
}

// The offset of the last record.
std::string Rest(std::string const& sought) {
    return *FindInLog(sought)->records.back()[0];
}

TEST(LogLine, IsTakenApart) {
    std::string const time = "2024-05-01T12:30:05.123+02:00";
    EXPECT_EQ(Parsed(time + " [4711] warning src/a.cpp:31: A: bad byte \\x01"),
              time + "|4711|warning|src/a.cpp:31|A: bad byte \\x01");
    EXPECT_EQ(Parsed("2024-05-01T12:30:05+02:00 [1] error -:0: "),
              "2024-05-01T12:30:05+02:00|1|error|-:0|");
    EXPECT_EQ(Parsed(time + " [1] info C:\\\\a b.cpp:1: <b>: &"),
              time + "|1|info|C:\\\\a b.cpp:1|<b>: &");
}

TEST(LogLine, IsKeptWholeWhenItHasAnotherForm) {
    std::string const time = "2024-05-01T12:30:05.123+02:00";
    for (std::string const& line : std::vector<std::string>{
             "", "free text", time, time + " [1]", time + " [1] error",
             time + " [1] error no source", time + " [] error a:1: b", time + " [x] error a:1: b",
             time + " 123 error a:1: b", time + " [1] fatal a:1: b", time + " [1] error : b",
             "2024-05-01 12:30:05 [1] error a:1: b", "x" + time + " [1] error a:1: b",
             "2024-05-01T12:30:0 [1] error a:1: b",
             "2024-05-01T12:30:05" + std::string(19, '0') + " [1] error a:1: b",
             time + " [1] error " + std::string(201, 'a') + ": b"}) {
        EXPECT_EQ(Parsed(line), "||other||" + line);
    }
}

TEST(LogLine, IsCutBeforeACharacter) {
    EXPECT_EQ(ParseLogLine(std::string(1000, 'a')).text, std::string(1000, 'a'));
    EXPECT_EQ(ParseLogLine(std::string(1001, 'a')).text, std::string(1000, 'a') + "\u2026");
    for (std::size_t ahead = 997; ahead < 1000; ++ahead) {
        EXPECT_EQ(ParseLogLine(std::string(ahead, 'a') + "\U0001F600" + "bb").text,
                  std::string(ahead, 'a') + "\u2026");
    }
    EXPECT_EQ(ParseLogLine(std::string(996, 'a') + "\U0001F600" + "b").text,
              std::string(996, 'a') + "\U0001F600" + "\u2026");
    EXPECT_EQ(ParseLogLine(std::string(1200, '\x80')).text, std::string(997, '\x80') + "\u2026");
    EXPECT_EQ(ParseLogLine(mark + "info a:1: " + std::string(1001, 'b')).text,
              std::string(1000, 'b') + "\u2026");
}

TEST(LogLine, HoldsATextInEitherCase) {
    for (char const* text : {"", "B", "b c", "A b C", "\u00e9"}) {
        EXPECT_TRUE(HoldsText("a B c \u00e9", text)) << text;
    }
    for (char const* text : {"d", "a  b", "\u00c9", "a B c \u00e9 "}) {
        EXPECT_FALSE(HoldsText("a B c \u00e9", text)) << text;
    }
    EXPECT_TRUE(HoldsText("", ""));
    EXPECT_FALSE(HoldsText("[", "{"));
    EXPECT_TRUE(HoldsText(std::string_view("a\0B", 3), std::string_view("\0b", 2)));
    EXPECT_FALSE(HoldsText(std::string_view("a\0B", 3), std::string_view("\0c", 2)));
}

TEST(Log, ShowsTheNewestEntryFirst) {
    LoggingMachine const machine(mark + "error a:1: one\n\nfree\n" + mark + "info b:2: t\two\n");
    EXPECT_EQ(Shown(ReadLog()),
              "55|2024-05-01T12:30:05.123+02:00|7|info|b:2|t\two\n"
              "50|||other||free\n"
              "0|2024-05-01T12:30:05.123+02:00|7|error|a:1|one\n"
              "0|||||\n");
}

TEST(Log, ShowsALineThatIsStillBeingWritten) {
    LoggingMachine const machine("one\ntwo");
    EXPECT_EQ(Texts(""), "two;one;;");
}

TEST(Log, MayBeEmpty) {
    LoggingMachine const machine("");
    EXPECT_EQ(Shown(ReadLog()), "0|||||\n");
}

TEST(Log, GivesEntriesOfALevelAndAbove) {
    LoggingMachine const machine(mark + "info a:1: i\n" + mark + "warning a:1: w\n" + mark +
                                 "error a:1: e\nother\n");
    EXPECT_EQ(Texts("info end "), "other;e;w;i;;");
    EXPECT_EQ(Texts("warning end "), "other;e;w;;");
    EXPECT_EQ(Texts("error end "), "other;e;;");
    EXPECT_EQ(Texts("loud end "), "other;e;w;i;;");
}

TEST(Log, GivesEntriesThatHoldAText) {
    LoggingMachine const machine(mark + "info a.cpp:1: one two\n" + mark + "info b.cpp:1: two\n");
    EXPECT_EQ(Texts("info end Two"), "two;one two;;");
    EXPECT_EQ(Texts("info end one two"), "one two;;");
    EXPECT_EQ(Texts("info end  two"), "two;one two;;");
    EXPECT_EQ(Texts("info end B.CPP"), "two;;");
    EXPECT_EQ(Texts("info end [7]"), "two;one two;;");
    EXPECT_EQ(Texts("info end three"), ";");
    EXPECT_EQ(Texts("warning end two"), ";");
}

TEST(Log, GivesEntriesBeforeAnOffset) {
    LoggingMachine const machine("one\ntwo\nthree\n");
    EXPECT_EQ(Texts("info 8"), "two;one;;");
    EXPECT_EQ(Texts("info 4 "), "one;;");
    EXPECT_EQ(Texts("info 0 "), ";");
    EXPECT_EQ(Texts("info 14 "), "three;two;one;;");
    EXPECT_EQ(Texts("info 99999999999999999999999 "), "three;two;one;;");
    EXPECT_EQ(Texts("info -1 "), "three;two;one;;");
}

TEST(Log, GivesFiftyEntriesAndWhereToGoOn) {
    std::string text;
    for (int i = 100; i < 220; ++i) {
        text += std::to_string(i) + "\n";
    }
    LoggingMachine const machine(text);
    auto const first = FindInLog("info end ");
    ASSERT_EQ(first->records.size(), 51U);
    EXPECT_EQ(*first->records[0][5], "219");
    EXPECT_EQ(*first->records[49][5], "170");
    EXPECT_EQ(Rest(""), "280");
    auto const second = FindInLog("info 280 ");
    EXPECT_EQ(*second->records[0][5], "169");
    EXPECT_EQ(Rest("info 280 "), "80");
    EXPECT_EQ(FindInLog("info 80 ")->records.size(), 21U);
    EXPECT_EQ(Rest("info 80 "), "0");
}

TEST(Log, LooksAtAMebibyteAtMost) {
    std::size_t const limit = 1 << 20;
    std::string text = "sought\n";
    while (text.size() < 2 * limit) {
        text += std::string(99, 'x') + "\n";
    }
    LoggingMachine const machine(text);
    EXPECT_EQ(Texts("info end sought"), ";");
    std::string const second = Rest("info end sought");
    // No line is lost where one search ends and the next begins.
    EXPECT_EQ((std::stoul(second) - 7) % 100, 0U);
    EXPECT_LT(std::stoul(second), text.size() - limit + 100);
    EXPECT_GE(std::stoul(second), text.size() - limit);
    std::string const third = Rest("info " + second + " sought");
    EXPECT_NE(third, "0");
    EXPECT_EQ(Texts("info " + third + " sought"), "sought;;");
    EXPECT_EQ(Rest("info " + third + " sought"), "0");
}

TEST(Log, TakesALineThatIsTooLongInParts) {
    std::size_t const limit = 1 << 20;
    LoggingMachine const machine("first\n" + std::string(limit + 10, 'y') + "\n");
    EXPECT_EQ(Texts(""), std::string(1000, 'y') + "\u2026;;");
    std::string const rest = Rest("");
    EXPECT_EQ(rest, "17");
    EXPECT_EQ(Texts("info " + rest + " "), std::string(11, 'y') + ";first;;");
}

TEST(Log, FitsInAPipe) {
    std::string text;
    for (int i = 0; i < 60; ++i) {
        text += mark + "warning " + std::string(200, 's') + ": " + std::string(2000, 'm') + "\n";
    }
    LoggingMachine const machine(text);
    EXPECT_LT(Shown(ReadLog()).size(), 65536U);
}

TEST(Log, IsNotThereWhenItIsNoFile) {
    FixtureMachine const machine;
    CapturedStderr const captured;
    EXPECT_EQ(Shown(ReadLog()), "no table\n");
    machine.Write("proc/self/fd/2/folder", "");
    EXPECT_EQ(Shown(ReadLog()), "no table\n");
    machine.Remove("proc/self/fd/2");
    // To be opened it would wait for a writer.
    ASSERT_EQ(mkfifo((machine.Folder() + "/proc/self/fd/2").c_str(), 0600), 0);
    EXPECT_EQ(Shown(ReadLog()), "no table\n");
    EXPECT_NE(captured.Text().find("log: standard error is no file that can be read"),
              std::string::npos)
        << captured.Text();
}

TEST(Log, IsWhatThisProcessLogs) {
    CapturedStderr const captured;
    Log_SpecEntry(logSpecWarn, "here.cpp", 5, "a\n%s", "b");
    auto const table = *ReadLog();
    EXPECT_EQ(ValueIn(table, "source", "here.cpp:5", "text"), "a\\nb");
    EXPECT_EQ(ValueIn(table, "source", "here.cpp:5", "level"), "warning");
}

}  // namespace
