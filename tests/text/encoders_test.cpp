#include <climits>
#include <locale>
#include <random>

#include "support/guarded_text.hpp"
#include "support/page_test.hpp"
#include "text/hex_digit.hpp"

using namespace Quillo;

namespace {

struct Row {
    std::string text;
    std::string result;
};

std::string Byte(int byte) {
    return std::string(1, static_cast<char>(byte));
}

std::string Decoded(std::string const& text) {
    return PcntDecode(text.c_str(), nullptr);
}

TEST(PcntEncode, KeepsLettersDigitsAndFourBytes) {
    for (Row const& row :
         {Row{"", ""}, Row{"a b", "a%20b"}, Row{"/dir/file_name-1.txt", "/dir/file_name-1.txt"},
          Row{"~+=", "%7E%2B%3D"}, Row{"&?%", "%26%3F%25"}, Row{"\xC3\xA9", "%C3%A9"},
          Row{std::string("ab\0cd", 5), "ab"}}) {
        EXPECT_EQ(PcntEncode(row.text), row.result);
        EXPECT_EQ(PcntEncode(row.text.c_str()), row.result);
    }
}

TEST(PcntEncode, EveryOtherByteBecomesTwoUpperCaseDigits) {
    std::string const kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-";
    for (int byte = 1; byte < 256; ++byte) {
        char escape[4];
        std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(byte));
        bool const isKept = kept.find(static_cast<char>(byte)) != std::string::npos;
        EXPECT_EQ(PcntEncode(Byte(byte)), isKept ? Byte(byte) : escape) << byte;
    }
}

TEST(PcntDecode, DecodesEscapesAndLeavesThePlus) {
    for (Row const& row :
         {Row{"", ""}, Row{"a+b%20c", "a+b c"}, Row{"%41%62", "Ab"}, Row{"%c3%A9", "\xC3\xA9"},
          Row{"%u00e9", "\xC3\xA9"}, Row{"%u20AC", "\xE2\x82\xAC"},
          Row{"%u007F%u0080%u07FF%u0800%uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, SurrogatesAreNotPaired) {
    EXPECT_EQ(Decoded("%uD83D%uDE00"), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(PcntDecode, OneDigitIsEnough) {
    EXPECT_EQ(Decoded("%4g"), "\x04g");
    EXPECT_EQ(Decoded("%4"), "\x04");
    EXPECT_EQ(Decoded("%f%41"),
              "\x0F"
              "A");
}

TEST(PcntDecode, AnEscapeWithoutDigitsEndsTheText) {
    for (Row const& row :
         {Row{"ab%zzcd", "ab"}, Row{"abc%", "abc"}, Row{"%U0041", ""}, Row{"a%00b", "a"},
          Row{"a%0g", "a"}, Row{"a%u0000b", "a"}, Row{"a%%41", "a"}, Row{"a%uzzzzb", "a"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, WhatIsNoDigitBehindPercentUCountsAsZero) {
    EXPECT_EQ(Decoded("%uz041b"), "Ab");
    EXPECT_EQ(Decoded("%u4z4zb"),
              "\xE4\x81\x80"
              "b");
    EXPECT_EQ(Decoded("%u00%41"),
              "\x04"
              "1")
        << "a percent sign is no digit either: 0x0004 is what %u00%4 gives";
}

TEST(PcntDecode, DigitsThatTheEndOfTheTextLeavesOutAreZeroByPosition) {
    for (Row const& row : {Row{"%u4", "\xE4\x80\x80"}, Row{"%u41", "\xE4\x84\x80"},
                           Row{"%u004", "\x40"}, Row{"%u00e", "\xC3\xA0"}, Row{"x%u", "x"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, TheBoundIsLookedAtBetweenEscapesOnly) {
    std::string const text = "x%41yz";
    struct Case {
        std::size_t bound;
        std::string result;
    };
    for (Case const& c : {Case{0, ""}, Case{1, "x"}, Case{2, "xA"}, Case{3, "xA"}, Case{4, "xA"},
                          Case{5, "xAy"}, Case{6, "xAyz"}, Case{7, "xAyz"}}) {
        EXPECT_EQ(PcntDecode(text.c_str(), text.c_str() + c.bound), c.result) << c.bound;
    }
    std::string const args = "%u00&41=b";
    EXPECT_EQ(PcntDecode(args.c_str(), args.c_str() + 4), "\x04") << "steps over the bound";
}

TEST(PcntDecode, NeverReadsPastTheEndOfTheText) {
    for (std::string const& text :
         {std::string("abc%"), std::string("%u"), std::string("%u1"), std::string("%u12"),
          std::string("%u123"), std::string("%u1234"), std::string("%4"), std::string("%41"),
          std::string("a%20b%u00e9%zz%u4")}) {
        for (std::size_t length = 0; length <= text.size(); ++length) {
            GuardedText const guarded(text.substr(0, length));
            std::string const expected = PcntDecode(text.substr(0, length).c_str(), nullptr);
            EXPECT_EQ(PcntDecode(guarded.c_str(), nullptr), expected);
            EXPECT_EQ(PcntDecode(guarded.c_str(), guarded.c_str() + length), expected);
        }
    }
}

TEST(PcntDecode, UndoesTheEncodingOfAnyText) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (std::size_t left = random() % 30; left > 0; --left) {
            text += static_cast<char>(1 + random() % 255);
        }
        EXPECT_EQ(Decoded(PcntEncode(text)), text);
    }
}

TEST(AddSlashes, EscapesBothQuotesAndTheBackslash) {
    for (Row const& row :
         {Row{"", ""}, Row{"it's", "it\\'s"}, Row{"a\\b", "a\\\\b"}, Row{"\"", "\\\""},
          Row{"\n\t\x01", "\n\t\x01"}, Row{std::string("a'\0b", 4), "a\\'"}}) {
        EXPECT_EQ(AddSlashes(row.text), row.result);
        EXPECT_EQ(AddSlashes(row.text.c_str()), row.result);
    }
    for (int byte = 1; byte < 256; ++byte) {
        bool const isSpecial = byte == '\\' || byte == '"' || byte == '\'';
        EXPECT_EQ(AddSlashes(Byte(byte)), (isSpecial ? "\\" : "") + Byte(byte)) << byte;
    }
}

TEST(EscapeJavascriptString, EscapesTheDoubleQuoteAndTheBackslash) {
    for (Row const& row : {Row{"", ""}, Row{"it's", "it's"}, Row{"\"", "\\\""}, Row{"\\", "\\\\"},
                           Row{"say \"it's\"", "say \\\"it's\\\""}}) {
        EXPECT_EQ(EscapeJavascriptString(row.text), row.result);
    }
    for (int byte = 1; byte < 256; ++byte) {
        bool const isSpecial = byte == '\\' || byte == '"';
        EXPECT_EQ(EscapeJavascriptString(Byte(byte)), (isSpecial ? "\\" : "") + Byte(byte));
    }
}

TEST(EscapeJavascriptString, ANulEndsTheTextOnlyWhereSomethingIsEscaped) {
    EXPECT_EQ(EscapeJavascriptString(std::string("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(EscapeJavascriptString(std::string("\"a\0b", 4)), "\\\"a");
    EXPECT_EQ(EscapeJavascriptString(std::string("a\0\"", 3)), "a");
}

class Grouping : public std::numpunct<char> {
    std::string do_grouping() const override { return "\3"; }
    char do_thousands_sep() const override { return '.'; }
};

TEST(EscapeJavascriptString, NumbersAreDigitsAloneWhateverTheGlobalLocaleGroups) {
    std::locale const before = std::locale::global(std::locale(std::locale(), new Grouping));
    EXPECT_EQ(EscapeJavascriptString(-42), "-42");
    EXPECT_EQ(EscapeJavascriptString(0), "0");
    EXPECT_EQ(EscapeJavascriptString(INT_MAX), "2147483647");
    EXPECT_EQ(EscapeJavascriptString(INT_MIN), "-2147483648");
    std::locale::global(before);
}

TEST(HexDigitValue, AByteThatIsNoDigitCountsAsZero) {
    std::string const digits = "0123456789abcdef";
    for (int byte = 0; byte < 256; ++byte) {
        std::size_t value = digits.find(static_cast<char>(byte));
        if (byte >= 'A' && byte <= 'F') {
            value = static_cast<std::size_t>(byte - 'A' + 10);
        }
        int const expected = value == std::string::npos ? 0 : static_cast<int>(value);
        EXPECT_EQ(HexDigitValue(static_cast<char>(byte)), expected) << byte;
    }
}

}  // namespace
