#include <climits>
#include <functional>

#include "host/config_store.hpp"
#include "host/database.hpp"
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

TEST_F(ConfigStoreTest, AnAssignmentIsSplitAtItsFirstEqualsSign) {
    EXPECT_EQ(ConfigUpdate("x=a=b"), 0);
    int value = 0;
    std::string const log =
        Log([&] { EXPECT_EQ(Cfg_GetBoolAttrValue("x", &value), ConfigStatus_NotBoolean); });
    EXPECT_NE(log.find("\"x\""), std::string::npos);
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
              "setting \"unknown\": there is no such setting"},
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
