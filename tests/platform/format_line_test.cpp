#include "host/format_line.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using QuilloHost::FormatLine;
using QuilloHost::SplitAttributes;
using QuilloHost::Value;

typedef std::vector<std::string> Names;

TEST(SplitAttributes, CutsAtEachBlankAndKeepsEmptyNames) {
    EXPECT_EQ(SplitAttributes(""), Names({""}));
    EXPECT_EQ(SplitAttributes("  "), Names({"", "", ""}));
    EXPECT_EQ(SplitAttributes("a"), Names({"a"}));
    EXPECT_EQ(SplitAttributes("a b"), Names({"a", "b"}));
    EXPECT_EQ(SplitAttributes(" a  bc "), Names({"", "a", "", "bc", ""}));
    EXPECT_EQ(SplitAttributes("a\tb"), Names({"a\tb"}));
}

struct FormatRow {
    char const* format;
    char const* line;
};

std::vector<Value> const twelve = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"};

TEST(FormatLine, PutsTheValueAtItsPosition) {
    for (FormatRow const& row : {FormatRow{"%1", "a"}, FormatRow{"%1\t%2\n", "a\tb\n"},
                                 FormatRow{"%2%1%2", "bab"}, FormatRow{"", ""}}) {
        EXPECT_EQ(FormatLine(row.format, twelve, "-"), row.line) << row.format;
    }
}

TEST(FormatLine, TakesAsManyDigitsAsThereAre) {
    for (FormatRow const& row :
         {FormatRow{"%10", "j"}, FormatRow{"%12x", "lx"}, FormatRow{"%1 0", "a 0"},
          FormatRow{"%01", "a"}, FormatRow{"%1%2%3%4%5%6%7%8%9%10%11%12", "abcdefghijkl"}}) {
        EXPECT_EQ(FormatLine(row.format, twelve, "-"), row.line) << row.format;
    }
}

TEST(FormatLine, LeavesAPercentSignWithoutDigitsAsItIs) {
    for (FormatRow const& row :
         {FormatRow{"%", "%"}, FormatRow{"%%", "%%"}, FormatRow{"%%1", "%a"},
          FormatRow{"%x%", "%x%"}, FormatRow{"50% of %2", "50% of b"}, FormatRow{"%1%", "a%"}}) {
        EXPECT_EQ(FormatLine(row.format, twelve, "-"), row.line) << row.format;
    }
}

TEST(FormatLine, GivesTheDefaultForAPositionWithoutValue) {
    for (FormatRow const& row :
         {FormatRow{"%0", "-"}, FormatRow{"%13", "-"}, FormatRow{"%99999999999999999999999", "-"},
          FormatRow{"%120", "-"}, FormatRow{"%00", "-"}}) {
        EXPECT_EQ(FormatLine(row.format, twelve, "-"), row.line) << row.format;
    }
    EXPECT_EQ(FormatLine("[%1]", {}, "none"), "[none]");
    EXPECT_EQ(FormatLine("[%1]", {}, ""), "[]");
}

TEST(FormatLine, GivesTheDefaultForAValueThatCannotBeHad) {
    EXPECT_EQ(FormatLine("%1,%2,%3", {"a", std::nullopt, ""}, "?"), "a,?,");
}

TEST(FormatLine, KeepsEveryOtherByteOfTheFormat) {
    EXPECT_EQ(FormatLine("\x01\t\r\n\x7f\xe4\\%1", {"v"}, ""), "\x01\t\r\n\x7f\xe4\\v");
}

TEST(FormatLine, MakesControlBytesOfAValueBlanks) {
    EXPECT_EQ(FormatLine("%1|", {std::string("a\tb\nc\0d\x1f\x7f", 9)}, ""), "a b c d  |");
    EXPECT_EQ(FormatLine("%1|", {"\xc3\xa9 ~!"}, ""), "\xc3\xa9 ~!|");
    EXPECT_EQ(FormatLine("%1|", {std::nullopt}, "a\tb"), "a b|");
}

TEST(FormatLine, LooksForNoFormatInAValue) {
    EXPECT_EQ(FormatLine("%1%2", {"%2", "%"}, ""), "%2%");
}

}  // namespace
