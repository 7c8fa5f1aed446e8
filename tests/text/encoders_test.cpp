#include <climits>
#include <cstdio>

#include "support/guarded_text.hpp"
#include "support/page_test.hpp"
#include "text/digit_grouping.hpp"
#include "text/hex_digit.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

using EncodersTest = PageTest;

struct Row {
    std::string text;
    std::string result;
};

std::string Byte(int byte) {
    return std::string(1, static_cast<char>(byte));
}

// What percent encoding makes of a byte, from the rules and not from the code.
std::string EncodedByte(char c) {
    std::string const kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-";
    if (kept.find(c) != std::string::npos) {
        return std::string(1, c);
    }
    char escape[4];
    std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(c) & 0xFF);
    return escape;
}

// What it makes of a text.
std::string Encoded(std::string const& text) {
    std::string encoded;
    for (char const c : text) {
        encoded += EncodedByte(c);
    }
    return encoded;
}

// The bytes of `text`, with a backslash before each one that is in `special`.
std::string WithBackslashes(std::string const& text, std::string const& special) {
    std::string result;
    for (char const c : text) {
        result += (special.find(c) != std::string::npos ? "\\" : "") + std::string(1, c);
    }
    return result;
}

TEST(PcntEncode, KeepsLettersDigitsAndFourBytes) {
    for (Row const& row :
         {Row{"", ""}, Row{"a b", "a%20b"}, Row{"/dir/file_name-1.txt", "/dir/file_name-1.txt"},
          Row{"~", "%7E"}, Row{"+", "%2B"}, Row{"=", "%3D"}, Row{"&?%", "%26%3F%25"},
          Row{"\xC3\xA9", "%C3%A9"}, Row{"\x01\xFF", "%01%FF"}, Row{"%41", "%2541"}}) {
        EXPECT_EQ(PcntEncode(row.text), row.result);
        EXPECT_EQ(PcntEncode(row.text.c_str()), row.result);
    }
}

TEST(PcntEncode, EveryOtherByteBecomesTwoUpperCaseDigits) {
    for (char const c : AllBytes()) {
        EXPECT_EQ(PcntEncode(std::string(1, c)), EncodedByte(c));
    }
}

TEST(PcntEncode, EncodesEachByteByItself) {
    for (std::string const& text : RandomTexts(AllBytes(), 40, 2000)) {
        EXPECT_EQ(PcntEncode(text), Encoded(text));
    }
}

TEST(PcntEncode, RunsOfAnyLengthStandBetweenEscapes) {
    for (std::string const& text : TextsOfRuns(" ", 40)) {
        ASSERT_EQ(PcntEncode(GuardedText(text).c_str()), Encoded(text)) << text;
    }
}

TEST(PcntEncode, ALongTextIsEncodedToItsEnd) {
    for (std::string const& text : LongTexts(" \xFF%")) {
        ASSERT_EQ(PcntEncode(GuardedText(text).c_str()), Encoded(text)) << text.size();
    }
}

TEST(PcntEncode, DecodingGivesTheTextBack) {
    for (std::string const& text : RandomTexts(AllBytes(), 40, 3000)) {
        EXPECT_EQ(PcntDecode(PcntEncode(text).c_str(), nullptr), text);
    }
    EXPECT_EQ(PcntDecode(PcntEncode(AllBytes()).c_str(), nullptr), AllBytes());
}

TEST(AddSlashes, EscapesBothQuotesAndTheBackslash) {
    for (Row const& row : {Row{"", ""}, Row{"it's", "it\\'s"}, Row{"a\\b", "a\\\\b"},
                           Row{"\"", "\\\""}, Row{"\\'", "\\\\\\'"}, Row{"\n\t\x01", "\n\t\x01"},
                           Row{"`/<&\x80\xFF", "`/<&\x80\xFF"}}) {
        EXPECT_EQ(AddSlashes(row.text), row.result);
        EXPECT_EQ(AddSlashes(row.text.c_str()), row.result);
    }
    EXPECT_EQ(AddSlashes(AllBytes()), WithBackslashes(AllBytes(), "\\\"'"));
    for (std::string const& text : AllTexts("\\\"'a", 5)) {
        EXPECT_EQ(AddSlashes(text), WithBackslashes(text, "\\\"'"));
    }
}

TEST(EscapeJavascriptString, EscapesTheDoubleQuoteAndTheBackslash) {
    for (Row const& row :
         {Row{"", ""}, Row{"it's", "it's"}, Row{"\"", "\\\""}, Row{"\\", "\\\\"},
          Row{"say \"it's\"", "say \\\"it's\\\""}, Row{"</script>\n", "</script>\n"}}) {
        EXPECT_EQ(EscapeJavascriptString(row.text), row.result);
    }
    EXPECT_EQ(EscapeJavascriptString(AllBytes()), WithBackslashes(AllBytes(), "\\\""));
    for (char const c : AllBytes()) {
        std::string const text(1, c);
        EXPECT_EQ(EscapeJavascriptString(text), WithBackslashes(text, "\\\""));
    }
    for (std::string const& text : AllTexts("\\\"'a", 5)) {
        EXPECT_EQ(EscapeJavascriptString(text), WithBackslashes(text, "\\\""));
    }
}

TEST(EscapeJavascriptString, ANulIsKeptWhereNothingIsEscaped) {
    EXPECT_EQ(EscapeJavascriptString(std::string("a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(EscapeJavascriptString(std::string("\0'", 2)), std::string("\0'", 2));
}

TEST(EscapeJavascriptString, ANulCutsTheTextWhereSomethingIsEscapedOnEitherSideOfIt) {
    EXPECT_EQ(EscapeJavascriptString(std::string("\"a\0b", 4)), "\\\"a");
    EXPECT_EQ(EscapeJavascriptString(std::string("a\0\"", 3)), "a");
    EXPECT_EQ(EscapeJavascriptString(std::string("\0\\", 2)), "");
}

TEST(EscapeJavascriptString, ANumberIsItsDecimalDigits) {
    struct Case {
        int number;
        std::string digits;
    };
    for (Case const& c : {Case{-42, "-42"}, Case{0, "0"}, Case{7, "7"}, Case{1234567, "1234567"},
                          Case{INT_MAX, "2147483647"}, Case{INT_MIN, "-2147483648"}}) {
        EXPECT_EQ(EscapeJavascriptString(c.number), c.digits);
        DigitGrouping const grouping;
        EXPECT_EQ(EscapeJavascriptString(c.number), c.digits) << "whatever the locale groups";
    }
}

TEST(HexDigitValue, AByteThatIsNoDigitCountsAsZero) {
    for (int byte = 0; byte < 256; ++byte) {
        std::string const digits = "0123456789abcdef";
        std::string const upper = "ABCDEF";
        std::size_t value = digits.find(static_cast<char>(byte));
        if (upper.find(static_cast<char>(byte)) != std::string::npos) {
            value = 10 + upper.find(static_cast<char>(byte));
        }
        int const expected = value == std::string::npos ? 0 : static_cast<int>(value);
        EXPECT_EQ(HexDigitValue(static_cast<char>(byte)), expected) << byte;
    }
}

TEST_F(EncodersTest, AStringIsReadUpToItsFirstNul) {
    std::string const text("a b'\0c d'", 9);
    EXPECT_EQ(PcntEncode(text), "a%20b%27");
    EXPECT_EQ(AddSlashes(text), "a b\\'");
}

TEST_F(EncodersTest, NeverReadPastTheEndOfTheText) {
    for (std::string const& text : std::vector<std::string>{"", "a", "'", "\\", "%", "a b'c\xFF"}) {
        GuardedText const guarded(text);
        EXPECT_EQ(PcntEncode(guarded.c_str()), PcntEncode(text));
        EXPECT_EQ(AddSlashes(guarded.c_str()), AddSlashes(text));
    }
}

TEST_F(EncodersTest, ReportNothing) {
    for (int byte = 0; byte < 256; ++byte) {
        std::string const text = "%" + Byte(byte) + "\"%u" + Byte(byte);
        PcntEncode(text);
        PcntDecode(text.c_str(), nullptr);
        AddSlashes(text);
        EscapeJavascriptString(text);
        EscapeJavascriptString(byte);
    }
    EXPECT_EQ(Platform().Trace(), "");
    EXPECT_EQ(DebugLines().size(), 0U);
}

}  // namespace
