#include "enums/self_test.hpp"

#include <cstring>
#include <functional>
#include <iostream>
#include <sstream>

#include "support/page_test.hpp"
#include "text/digit_grouping.hpp"

using namespace Quillo;

namespace {

struct Result {
    int status;
    std::string output;
};

Result Tested(std::function<int()> const& test) {
    ::testing::internal::CaptureStdout();
    int const status = test();
    return {status, ::testing::internal::GetCapturedStdout()};
}

class SelfTestTest : public PageTest {};

TEST_F(SelfTestTest, AVocabularyInOrderPassesInSilence) {
    for (auto const test : {LoaContext_UnitTest, ValignType_UnitTest, AlignType_UnitTest,
                            ObjectType_UnitTest, AuthAccessMethod_UnitTest,
                            SmartcardEnablement_UnitTest, IconSize_UnitTest, EnumsUnitTest}) {
        Result const result = Tested(test);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(SelfTestTest, TheFirstPairOutOfOrderIsNamedByItsEarlierValue) {
    int const values[] = {0, 2, 1, 0};
    Result const result = Tested([&] { return SelfTest("IconSize", "", values, 4, 3, 3); });
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "** IconSize_UnitTest: Quillo:: IconSize 2 is out-of-order\n");
}

TEST_F(SelfTestTest, EqualNeighboursAreOutOfOrder) {
    int const values[] = {1, 1};
    Result const result = Tested([&] { return SelfTest("IconSize", "", values, 2, 1, 1); });
    EXPECT_EQ(result.output, "** IconSize_UnitTest: Quillo:: IconSize 1 is out-of-order\n");
}

TEST_F(SelfTestTest, AWrongFirstValueIsFoundBeforeAWrongLastOne) {
    ValignType_FIRST = ValignType_Middle;
    ValignType_LAST = ValignType_Middle;
    Result result = Tested(ValignType_UnitTest);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "** ValignType_UnitTest: Quillo:: ValignType_FIRST is wrong\n");

    ValignType_FIRST = ValignType_Top;
    result = Tested(ValignType_UnitTest);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "** ValignType_UnitTest: Quillo:: ValignType_LAST is wrong\n");
    ValignType_LAST = ValignType_Bottom;
}

TEST_F(SelfTestTest, AnEndIsWrongOnEitherSideOfItsValue) {
    int const values[] = {1, 2};
    struct Row {
        int first;
        int last;
        char const* wrong;
    };
    for (Row const& row :
         {Row{0, 2, "_FIRST"}, Row{2, 2, "_FIRST"}, Row{1, 1, "_LAST"}, Row{1, 3, "_LAST"}}) {
        Result const result = Tested(
            [&] { return SelfTest("IconSize", "a\0b\0c\0", values, 2, row.first, row.last); });
        EXPECT_EQ(result.output, std::string("** IconSize_UnitTest: Quillo:: IconSize") +
                                     row.wrong + " is wrong\n");
    }
}

TEST_F(SelfTestTest, ATextThatGivesNoValueFailsTheConversion) {
    Platform().compare = [](char const* left, char const* right) {
        return std::strcmp(left, "center") == 0 ? 1 : std::strcmp(left, right);
    };
    Result const result = Tested(AlignType_UnitTest);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "** AlignType_UnitTest: Failed back-and-forth conversion of \"center\" (1)\n");
}

TEST_F(SelfTestTest, ATextThatGivesAnotherValueFailsTheConversion) {
    Platform().compare = [](char const*, char const*) { return 0; };
    Result const result = Tested(SmartcardEnablement_UnitTest);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "** SmartcardEnablement_UnitTest: Failed back-and-forth conversion of \"alwaysOn\" "
              "(1)\n");
}

TEST_F(SelfTestTest, AValueWithoutATextFailsTheConversion) {
    int const values[] = {0, 1};
    Result const result = Tested([&] { return SelfTest("ObjectType", "loa\0", values, 2, 0, 1); });
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "** ObjectType_UnitTest: Failed back-and-forth conversion of \"\" (1)\n");
}

TEST_F(SelfTestTest, ALocaleThatGroupsDigitsChangesNoNumber) {
    int const values[] = {1234567, 1234567};
    DigitGrouping const grouping;
    std::locale const before = std::cout.imbue(std::locale());
    Result const order = Tested([&] { return SelfTest("X", "", values, 2, 0, 0); });
    Result const conversion =
        Tested([&] { return SelfTest("X", "", values, 1, values[0], values[0]); });
    std::cout.imbue(before);
    EXPECT_EQ(order.output, "** X_UnitTest: Quillo:: X 1234567 is out-of-order\n");
    EXPECT_EQ(conversion.output,
              "** X_UnitTest: Failed back-and-forth conversion of \"\" (1234567)\n");
}

// Counts how often it is flushed.
struct FlushCounter : std::stringbuf {
    int sync() override {
        ++flushes;
        return 0;
    }

    int flushes = 0;
};

TEST_F(SelfTestTest, AFailedConversionIsFlushed) {
    int const value = 1;
    FlushCounter buffer;
    std::streambuf* const before = std::cout.rdbuf(&buffer);
    SelfTest("X", "", &value, 1, 1, 1);
    std::cout.rdbuf(before);
    EXPECT_EQ(buffer.str(), "** X_UnitTest: Failed back-and-forth conversion of \"\" (1)\n");
    EXPECT_EQ(buffer.flushes, 1);
}

TEST_F(SelfTestTest, TheSelfTestOfAllStopsAtTheFirstThatFails) {
    // Each is broken while those behind it are broken as well.
    SmartcardEnablement_LAST = SmartcardEnablement_Disabled;
    IconSize_LAST = IconSize_Small;
    Result result = Tested(EnumsUnitTest);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output,
              "** SmartcardEnablement_UnitTest: Quillo:: SmartcardEnablement_LAST is wrong\n");
    AlignType_LAST = AlignType_Left;
    ObjectType_LAST = ObjectType_Loa;
    AuthAccessMethod_LAST = AuthAccessMethod_NonSecure;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** AlignType_UnitTest: Quillo:: AlignType_LAST is wrong\n");
    AlignType_LAST = AlignType_Right;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** ObjectType_UnitTest: Quillo:: ObjectType_LAST is wrong\n");
    ObjectType_LAST = ObjectType_Sys;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** AuthAccessMethod_UnitTest: Quillo:: AuthAccessMethod_LAST is wrong\n");
    AuthAccessMethod_LAST = AuthAccessMethod_Hidden;
    SmartcardEnablement_LAST = SmartcardEnablement_Editable;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** IconSize_UnitTest: Quillo:: IconSize_LAST is wrong\n");
    IconSize_LAST = IconSize_Huge;
    LoaContext_LAST = LoaContext_None;
    ValignType_LAST = ValignType_Top;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** LoaContext_UnitTest: Quillo:: LoaContext_LAST is wrong\n");
    LoaContext_LAST = LoaContext_Both;
    EXPECT_EQ(Tested(EnumsUnitTest).output,
              "** ValignType_UnitTest: Quillo:: ValignType_LAST is wrong\n");
    ValignType_LAST = ValignType_Bottom;
}

}  // namespace
