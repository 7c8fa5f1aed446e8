#include <climits>
#include <functional>

#include "host/config_store.hpp"
#include "host/database.hpp"
#include "host/setting_table.hpp"
#include "platform/store_fixture.hpp"

using namespace QuilloHost;

namespace {

using ConfigStoreTest = StoreFixture;

TEST_F(ConfigStoreTest, ASettingHasItsDefaultUntilItIsSet) {
    EXPECT_EQ(Read("x"), 0);
    EXPECT_EQ(Read("y"), 1);
}

TEST_F(ConfigStoreTest, TrueFalseAndWholeNumbersAreRead) {
    struct Row {
        char const* text;
        int value;
    };
    for (Row const& row : {Row{"TRUE", 1}, Row{"FALSE", 0}, Row{"0", 0}, Row{"5", 5}, Row{"-1", -1},
                           Row{"2147483647", INT_MAX}, Row{"-2147483648", INT_MIN}}) {
        EXPECT_EQ(Cfg_SetAttrValue("x", row.text), 0);
        EXPECT_EQ(Read("x"), row.value) << row.text;
    }
}

TEST_F(ConfigStoreTest, AnyOtherValueIsNotBooleanAndLeavesTheOutputAsItWas) {
    for (char const* const text : {"", "true", "yes", "1 ", " 1", "1.5", "2147483648", "TRUEX"}) {
        EXPECT_EQ(Cfg_SetAttrValue("x", text), 0);
        int value = 4711;
        std::string const log =
            Log([&] { EXPECT_EQ(Cfg_GetBoolAttrValue("x", &value), ConfigStatus_NotBoolean); });
        EXPECT_EQ(value, 4711) << text;
        EXPECT_NE(log.find("setting \"x\""), std::string::npos);
    }
}

// Which of the signs ends the name is not to be known.
TEST_F(ConfigStoreTest, AnAssignmentWithASecondEqualsSignChangesNothing) {
    ASSERT_EQ(ConfigUpdate("x=5"), 0);
    for (char const* const assignment : {"x=y=TRUE", "x==TRUE", "x=TRUE=", "=x=TRUE"}) {
        std::string const log =
            Log([&] { EXPECT_EQ(ConfigUpdate(assignment), ConfigStatus_BadArgument); });
        EXPECT_NE(log.find("setting \"" + std::string(assignment) +
                           "\": an assignment has the form NAME=VALUE, with one '='\n"),
                  std::string::npos)
            << log;
        EXPECT_EQ(FindValue("x"), "5") << assignment;
        EXPECT_EQ(FindValue("y"), std::nullopt) << assignment;
    }
}

TEST_F(ConfigStoreTest, AValueHasAtMost256Bytes) {
    std::string const longest(256, 'v');
    std::string const tooLong(257, 'w');
    EXPECT_EQ(Cfg_SetAttrValue("x", longest.c_str()), ConfigStatus_Done);
    EXPECT_EQ(FindValue("x"), longest);
    EXPECT_EQ(ConfigUpdate(("y=" + longest).c_str()), ConfigStatus_Done);
    EXPECT_EQ(FindValue("y"), longest);
    EXPECT_TRUE(DeclareSetting("z", longest));
    Log([&] {
        EXPECT_EQ(Cfg_SetAttrValue("x", tooLong.c_str()), ConfigStatus_BadArgument);
        EXPECT_EQ(ConfigUpdate(("y=" + tooLong).c_str()), ConfigStatus_BadArgument);
        EXPECT_FALSE(DeclareSetting("z", tooLong));
    });
    EXPECT_EQ(FindValue("x"), longest);
    EXPECT_EQ(FindValue("y"), longest);
}

TEST_F(ConfigStoreTest, WhatBreaksTheRulesIsRefusedWithAStatusAndALogEntry) {
    struct Row {
        std::function<long()> call;
        long status;
        std::string said;
    };
    std::string const longValue(257, 'v');
    int value = 4711;
    for (Row const& row : std::vector<Row>{
             {[&] { return Cfg_GetBoolAttrValue("unknown", &value); }, ConfigStatus_UnknownName,
              "setting \"unknown\": there is no such setting: declare it with "
              "QuilloHost::DeclareSetting before its first use\n"},
             {[&] { return Cfg_GetBoolAttrValue(nullptr, &value); }, ConfigStatus_BadArgument,
              "no name"},
             {[&] { return Cfg_GetBoolAttrValue("x", nullptr); }, ConfigStatus_BadArgument,
              "no place"},
             {[&] { return Cfg_GetBoolAttrValue("", &value); }, ConfigStatus_BadArgument,
              "a name has 1 to 64 bytes"},
             {[&] { return Cfg_SetAttrValue("unknown", "TRUE"); }, ConfigStatus_UnknownName,
              "unknown"},
             {[&] { return Cfg_SetAttrValue("x=y", "TRUE"); }, ConfigStatus_BadArgument, "no '='"},
             {[&] { return Cfg_SetAttrValue("x\n", "TRUE"); }, ConfigStatus_BadArgument,
              "no control byte"},
             {[&] { return Cfg_SetAttrValue("x", nullptr); }, ConfigStatus_BadArgument, "no value"},
             {[&] { return Cfg_SetAttrValue("x", "a\tb"); }, ConfigStatus_BadArgument,
              "a value has at most 256 bytes"},
             {[&] { return Cfg_SetAttrValue("x", longValue.c_str()); }, ConfigStatus_BadArgument,
              "a value has at most 256 bytes"},
             {[&] { return ConfigUpdate("x"); }, ConfigStatus_BadArgument, "NAME=VALUE"},
             {[&] { return ConfigUpdate("=TRUE"); }, ConfigStatus_BadArgument, "a name has"},
             {[&] { return ConfigUpdate(nullptr); }, ConfigStatus_BadArgument, "NAME=VALUE"},
             {[&] { return ConfigUpdate("unknown=TRUE"); }, ConfigStatus_UnknownName, "unknown"},
             {[&] { return ConfigUpdate("x=a\nb"); }, ConfigStatus_BadArgument, "a value has"}}) {
        std::string const log = Log([&] { EXPECT_EQ(row.call(), row.status) << row.said; });
        EXPECT_NE(log.find(row.said), std::string::npos) << log;
        EXPECT_EQ(value, 4711);
    }
    EXPECT_EQ(Read("x"), 0) << "nothing was changed";
}

TEST_F(ConfigStoreTest, ADeclarationThatBreaksTheRulesIsRefused) {
    std::string const log = Log([] {
        EXPECT_FALSE(DeclareSetting("a=b", "TRUE"));
        EXPECT_FALSE(DeclareSetting(" a", "TRUE"));
        EXPECT_FALSE(DeclareSetting(std::string(65, 'n'), "TRUE"));
        EXPECT_FALSE(DeclareSetting("a", "\x01"));
    });
    EXPECT_NE(log.find("DeclareSetting"), std::string::npos);
    EXPECT_TRUE(DeclareSetting(std::string(64, 'n'), ""));
}

TEST_F(ConfigStoreTest, TheFolderIsTheOwnersAloneAndTheDatabaseInWalMode) {
    EXPECT_EQ(ConfigUpdate("x=TRUE"), 0);
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::status(State()).permissions(), fs::perms::owner_all);
    Database database(File(), 0);
    Statement mode(database, "PRAGMA journal_mode");
    ASSERT_TRUE(mode.Step());
    EXPECT_EQ(mode.Text(), "wal");
}

}  // namespace
