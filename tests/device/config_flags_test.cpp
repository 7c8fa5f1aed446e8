#include <climits>

#include "device/device_fixture.hpp"

using namespace Quillo;

namespace {

char const file[] = "src/device/config_flags.cpp";
char const failedFormat[] = "Failed to get config value: %s";
char const updateFormat[] = "ConfigUpdate(%s) failed status=%ld";

class ConfigFlagsTest : public PageTest {};

TEST_F(ConfigFlagsTest, AnyNumberButZeroReadsTrue) {
    struct {
        int number;
        bool value;
    } const rows[] = {
        {0, false}, {1, true},   {2, true},       {-1, true},
        {10, true}, {256, true}, {INT_MAX, true}, {INT_MIN, true},
    };
    for (auto const& row : rows) {
        Platform().settings["ssh"] = row.number;
        for (bool before : {false, true}) {
            bool value = before;
            EXPECT_EQ(GetConfig("ssh", value), 0);
            EXPECT_EQ(value, row.value) << row.number;
        }
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ConfigFlagsTest, AReadAsksTheStoreOnceForTheNameAsItIs) {
    Platform().settings[" a=b%s "] = 1;
    bool value = false;
    EXPECT_EQ(GetConfig(" a=b%s ", value), 0);
    EXPECT_EQ(Platform().trace, Lines{"Cfg_GetBoolAttrValue  a=b%s "});
}

TEST_F(ConfigFlagsTest, AFailedReadLeavesTheValueAndIsReported) {
    for (bool before : {false, true}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        bool value = before;
        EXPECT_EQ(GetConfig("no%such", value), 1);
        EXPECT_EQ(value, before);
        EXPECT_EQ(Reports(), (std::vector<Report>{{"error", file, failedFormat,
                                                   "Failed to get config value: no%such"}}));
        EXPECT_EQ(Platform().trace, (Lines{"Cfg_GetBoolAttrValue no%such",
                                           "log error src/device/config_flags.cpp: "
                                           "Failed to get config value: no%such"}));
    }
}

TEST_F(ConfigFlagsTest, AWritePassesTrueAndFalseInUpperCase) {
    EXPECT_EQ(PutConfig("ssh", true), 0);
    EXPECT_EQ(PutConfig("telnet", false), 0);
    EXPECT_EQ(PutConfig("", true), 0);
    EXPECT_EQ(Platform().trace, (Lines{"Cfg_SetAttrValue ssh TRUE", "Cfg_SetAttrValue telnet FALSE",
                                       "Cfg_SetAttrValue  TRUE"}));
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ConfigFlagsTest, AFailedWriteIsReportedInTheWordsOfAFailedRead) {
    for (int result : {1, -1, 5, 256, INT_MIN}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        Platform().setResult = result;
        EXPECT_EQ(PutConfig("ssh", false), 1) << result;
        EXPECT_EQ(Reports(), (std::vector<Report>{{"error", file, failedFormat,
                                                   "Failed to get config value: ssh"}}));
        EXPECT_EQ(Platform().trace, (Lines{"Cfg_SetAttrValue ssh FALSE",
                                           "log error src/device/config_flags.cpp: "
                                           "Failed to get config value: ssh"}));
    }
}

TEST_F(ConfigFlagsTest, APersistentWriteIsOneAssignmentWithoutBlanks) {
    EXPECT_EQ(PutPersistentConfig("x", true), 0);
    EXPECT_EQ(PutPersistentConfig("x", false), 0);
    EXPECT_EQ(PutPersistentConfig("", true), 0);
    EXPECT_EQ(PutPersistentConfig("a name=b", false), 0);
    EXPECT_EQ(Platform().trace, (Lines{"ConfigUpdate x=TRUE", "ConfigUpdate x=FALSE",
                                       "ConfigUpdate =TRUE", "ConfigUpdate a name=b=FALSE"}));
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ConfigFlagsTest, AFailedPersistentWriteIsReportedWithItsAssignmentAndStatus) {
    struct {
        std::string name;
        bool value;
        long status;
        std::string message;
    } const rows[] = {
        {"x", true, 5, "ConfigUpdate(x=TRUE) failed status=5"},
        {"x", false, 1, "ConfigUpdate(x=FALSE) failed status=1"},
        {"%s", true, -1, "ConfigUpdate(%s=TRUE) failed status=-1"},
        {"", false, 256, "ConfigUpdate(=FALSE) failed status=256"},
        {"x", true, LONG_MAX, "ConfigUpdate(x=TRUE) failed status=" + std::to_string(LONG_MAX)},
        {"x", true, LONG_MIN, "ConfigUpdate(x=TRUE) failed status=" + std::to_string(LONG_MIN)},
    };
    for (auto const& row : rows) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        Platform().updateResult = row.status;
        EXPECT_EQ(PutPersistentConfig(row.name, row.value), 1);
        EXPECT_EQ(Reports(), (std::vector<Report>{{"error", file, updateFormat, row.message}}));
        EXPECT_EQ(Platform().trace,
                  (Lines{"ConfigUpdate " + row.name + (row.value ? "=TRUE" : "=FALSE"),
                         "log error src/device/config_flags.cpp: " + row.message}));
    }
}

}  // namespace
