#include <device_log.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <regex>
#include <set>
#include <string>

#include "host/host.hpp"
#include "platform/captured_stderr.hpp"

namespace {

using QuilloHost::LogLevel;

class DeviceLog : public testing::Test {
protected:
    ~DeviceLog() override { QuilloHost::SetLogThreshold(LogLevel::Info); }
};

// What an entry leaves on standard error, behind the time and the process.
std::string Written(int level, char const* file, int line, char const* message) {
    CapturedStderr const captured;
    Log_SpecEntry(level, file, line, "%s", message);
    std::string const text = captured.Text();
    std::size_t const head = text.find("] ");
    return head == std::string::npos ? text : text.substr(head + 2);
}

TEST_F(DeviceLog, HasFourDistinctLevelCodes) {
    std::set<int> const codes = {logSpecError, logSpecWarn, logSpecInfo, logSpecForceInfo};
    EXPECT_EQ(codes.size(), 4U);
}

TEST_F(DeviceLog, WritesTimeProcessLevelFileLineAndMessage) {
    CapturedStderr const captured;
    Log_SpecEntry(logSpecWarn, "src/a.cpp", 42, "%s is %d", "it", 7);
    std::string const expected = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}[+-]\d\d:\d\d \[)" +
                                 std::to_string(getpid()) +
                                 R"(\] warning src/a\.cpp:42: it is 7\n)";
    EXPECT_TRUE(std::regex_match(captured.Text(), std::regex(expected))) << captured.Text();
}

TEST_F(DeviceLog, NamesEachLevel) {
    EXPECT_EQ(Written(logSpecError, "f", 1, "m"), "error f:1: m\n");
    EXPECT_EQ(Written(logSpecWarn, "f", 1, "m"), "warning f:1: m\n");
    EXPECT_EQ(Written(logSpecInfo, "f", 1, "m"), "info f:1: m\n");
    EXPECT_EQ(Written(logSpecForceInfo, "f", 1, "m"), "info f:1: m\n");
}

TEST_F(DeviceLog, TakesAnUnknownLevelForAnError) {
    QuilloHost::SetLogThreshold(LogLevel::Error);
    EXPECT_EQ(Written(4711, "f", 1, "m"), "error f:1: m\n");
}

TEST_F(DeviceLog, KeepsAnEntryInOneLine) {
    EXPECT_EQ(Written(logSpecInfo, "f", 1, "a\nerror g:2: forged"),
              "info f:1: a\\nerror g:2: forged\n");
    EXPECT_EQ(Written(logSpecInfo, "f\n\x1b", 1, "tab\tback\\slash"),
              "info f\\n\\x1b:1: tab\\tback\\\\slash\n");
}

TEST_F(DeviceLog, WritesAMessageOfAnyLengthWhole) {
    std::string const message = std::string(100000, 'x') + "end";
    EXPECT_EQ(Written(logSpecInfo, "f", 1, message.c_str()), "info f:1: " + message + "\n");
}

TEST_F(DeviceLog, TakesBracesForThemselves) {
    EXPECT_EQ(Written(logSpecInfo, "{}", 1, "{0} {} %v {"), "info {}:1: {0} {} %v {\n");
}

TEST_F(DeviceLog, ShowsANullFileAsADash) {
    EXPECT_EQ(Written(logSpecInfo, nullptr, 3, "m"), "info -:3: m\n");
}

TEST_F(DeviceLog, ShowsTheBareFormatWhenTheMessageCannotBeMade) {
    CapturedStderr const captured;
    wchar_t const noCharacter[] = {static_cast<wchar_t>(0x110000), 0};
    Log_SpecEntry(logSpecInfo, "f", 1, "wide %ls", noCharacter);
    EXPECT_NE(captured.Text().find("info f:1: (cannot be formatted) wide %ls\n"), std::string::npos)
        << captured.Text();
}

TEST_F(DeviceLog, LeavesOutEntriesBelowTheThreshold) {
    struct Row {
        LogLevel threshold;
        bool info, warning, error;
    };
    for (Row const& row :
         {Row{LogLevel::Info, true, true, true}, Row{LogLevel::Warning, false, true, true},
          Row{LogLevel::Error, false, false, true}}) {
        QuilloHost::SetLogThreshold(row.threshold);
        EXPECT_EQ(Written(logSpecInfo, "f", 1, "m") != "", row.info);
        EXPECT_EQ(Written(logSpecWarn, "f", 1, "m") != "", row.warning);
        EXPECT_EQ(Written(logSpecError, "f", 1, "m") != "", row.error);
    }
}

TEST_F(DeviceLog, HoldsBackNoForcedEntry) {
    QuilloHost::SetLogThreshold(LogLevel::Error);
    EXPECT_EQ(Written(logSpecForceInfo, "f", 1, "m"), "info f:1: m\n");
}

TEST_F(DeviceLog, ReadsTheLevelCodesAtEachEntry) {
    int const before = logSpecWarn;
    logSpecWarn = 99;
    EXPECT_EQ(Written(99, "f", 1, "m"), "warning f:1: m\n");
    logSpecWarn = before;
}

}  // namespace
