#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <quillo>

#include "support/guarded_text.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

struct Row {
    std::string text;
    std::string result;
};

std::string Decoded(std::string const& text) {
    return PcntDecode(text.c_str(), nullptr);
}

// A number below 0x10000 in UTF-8, as it stands in the tables of the encoding.
std::string Utf8(unsigned unit) {
    auto const byte = [](unsigned value) { return static_cast<char>(value); };
    if (unit < 128) {
        return {byte(unit)};
    }
    if (unit < 2048) {
        return {byte(192 + unit / 64), byte(128 + unit % 64)};
    }
    return {byte(224 + unit / 4096), byte(128 + unit / 64 % 64), byte(128 + unit % 64)};
}

unsigned Hex(std::string const& digits) {
    return static_cast<unsigned>(std::strtoul(digits.c_str(), nullptr, 16));
}

// What the first `bound` bytes of `text` decode to, from the rules and not from the code.
std::string ByTheRules(std::string const& text, std::size_t bound) {
    std::string const digits = "0123456789abcdefABCDEF";
    std::string result;
    for (std::size_t at = 0; at < std::min(bound, text.size());) {
        std::string const behind = text.substr(at + 1, 5);
        if (text[at] != '%') {
            result += text[at++];
        } else if (behind.substr(0, 1) == "u") {
            std::string four = (behind + "0000").substr(1, 4);
            std::replace_if(
                four.begin(), four.end(), [&](char c) { return digits.find(c) == digits.npos; },
                '0');
            result += Utf8(Hex(four));
            at += 6;
        } else {
            std::string const two = behind.substr(0, 2);
            std::string const used = two.substr(0, two.find_first_not_of(digits));
            result += static_cast<char>(Hex(used));
            at += 1 + used.size();
        }
    }
    return result.substr(0, result.find('\0'));
}

TEST(PcntDecode, DecodesEscapesAndLeavesThePlus) {
    for (Row const& row :
         {Row{"", ""}, Row{"a+b%20c", "a+b c"}, Row{"%41%62", "Ab"}, Row{"%c3%A9", "\xC3\xA9"},
          Row{"%aF%Fa", "\xAF\xFA"}, Row{"\x80\xFF", "\x80\xFF"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, AByteEscapeIsOneRawByteAndNoCharacter) {
    for (unsigned byte = 1; byte < 256; ++byte) {
        char upper[8];
        char lower[8];
        std::snprintf(upper, sizeof upper, "x%%%02Xy", byte);
        std::snprintf(lower, sizeof lower, "x%%%02xy", byte);
        for (std::string const& text : {std::string(upper), std::string(lower)}) {
            EXPECT_EQ(Decoded(text), std::string("x") + static_cast<char>(byte) + "y") << text;
        }
    }
}

TEST(PcntDecode, AUnicodeEscapeIsWrittenAsUtf8) {
    for (Row const& row :
         {Row{"%u0041", "A"}, Row{"%u00e9", "\xC3\xA9"}, Row{"%u20AC", "\xE2\x82\xAC"},
          Row{"%u007F%u0080", "\x7F\xC2\x80"}, Row{"%u07FF%u0800", "\xDF\xBF\xE0\xA0\x80"},
          Row{"%uFFFF", "\xEF\xBF\xBF"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        char text[8];
        std::snprintf(text, sizeof text, "%%u%04x", unit);
        ASSERT_EQ(Decoded(text), Utf8(unit)) << text;
        std::snprintf(text, sizeof text, "%%u%04X", unit);
        ASSERT_EQ(Decoded(text), Utf8(unit)) << text;
    }
}

TEST(PcntDecode, SurrogatesAreNotPaired) {
    EXPECT_EQ(Decoded("%uD83D%uDE00"), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(PcntDecode, AnUpperCaseUIsNoUnicodeEscape) {
    EXPECT_EQ(Decoded("%U0041"), "");
    EXPECT_EQ(Decoded("a%U0041"), "a");
}

TEST(PcntDecode, OneDigitIsEnough) {
    EXPECT_EQ(Decoded("%4g"), "\x04g");
    EXPECT_EQ(Decoded("%4"), "\x04");
    EXPECT_EQ(Decoded("%4%41"), "\x04" + std::string("A"));
    EXPECT_EQ(Decoded("%f+"), "\x0F+");
    EXPECT_EQ(Decoded("%414"), "A4") << "and two are enough as well";
}

TEST(PcntDecode, AZeroByteCutsTheResult) {
    for (Row const& row :
         {Row{"ab%zzcd", "ab"}, Row{"abc%", "abc"}, Row{"a%00b", "a"}, Row{"a%0g", "a"},
          Row{"a%0", "a"}, Row{"a%u0000b", "a"}, Row{"a%%41", "a"}, Row{"a%uzzzzb", "a"},
          Row{"%", ""}, Row{"%+", ""}, Row{"a%\x80", "a"}, Row{"a%-1", "a"}, Row{"a% 1", "a"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, WhatIsNoDigitBehindPercentUCountsAsZero) {
    for (Row const& row :
         {Row{"%uz041b", "Ab"}, Row{"%u4z4zb", "\xE4\x81\x80" + std::string("b")},
          Row{"%u00%41", "\x04" + std::string("1")}, Row{"%u\xFF\xFF\x34\x31", "A"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, DigitsThatTheEndOfTheTextLeavesOutAreZeroByPosition) {
    for (Row const& row :
         {Row{"%u4", "\xE4\x80\x80"}, Row{"%u41", "\xE4\x84\x80"}, Row{"%u004", "\x40"},
          Row{"%u00e", "\xC3\xA0"}, Row{"%u1", "\xE1\x80\x80"}, Row{"%u123", "\xE1\x88\xB0"},
          Row{"x%u", "x"}, Row{"x%u0", "x"}}) {
        EXPECT_EQ(Decoded(row.text), row.result) << row.text;
    }
}

TEST(PcntDecode, TheBoundIsLookedAtBetweenEscapesOnly) {
    struct Case {
        std::string text;
        std::size_t bound;
        std::string result;
    };
    for (Case const& c :
         {Case{"x%41yz", 0, ""}, Case{"x%41yz", 1, "x"}, Case{"x%41yz", 2, "xA"},
          Case{"x%41yz", 3, "xA"}, Case{"x%41yz", 4, "xA"}, Case{"x%41yz", 5, "xAy"},
          Case{"x%41yz", 6, "xAyz"}, Case{"%4&1", 2, "\x04"}, Case{"%u0041z", 1, "A"},
          Case{"%u0041z", 6, "A"}, Case{"%u0041z", 7, "Az"}, Case{"%u00&41=b", 5, "\x04"}}) {
        EXPECT_EQ(PcntDecode(c.text.c_str(), c.text.c_str() + c.bound), c.result)
            << c.text << " up to " << c.bound;
    }
}

TEST(PcntDecode, AUnicodeEscapeMayStepOverTheBoundButNeverOverTheNul) {
    char const cut[] =
        "a%u4\0"
        "041z";
    EXPECT_EQ(PcntDecode(cut, nullptr), "a\xE4\x80\x80");
    EXPECT_EQ(PcntDecode(cut, cut + sizeof cut), "a\xE4\x80\x80");
    char const plain[] = "ab\0cd";
    EXPECT_EQ(PcntDecode(plain, plain + 5), "ab");
}

TEST(PcntDecode, NeverReadsPastTheEndOfTheText) {
    for (char const* const whole : {"abc%", "%u1234", "%u123", "%4", "%41", "a%20b%u00e9%zz%u4",
                                    "%u%u%u%", "%%%", "%u00&a"}) {
        std::string const text = whole;
        for (std::size_t length = 0; length <= text.size(); ++length) {
            std::string const cut = text.substr(0, length);
            GuardedText const guarded(cut);
            EXPECT_EQ(PcntDecode(guarded.c_str(), nullptr), ByTheRules(cut, length)) << cut;
            for (std::size_t bound = 0; bound <= length; ++bound) {
                EXPECT_EQ(PcntDecode(guarded.c_str(), guarded.c_str() + bound),
                          ByTheRules(cut, bound))
                    << cut << " up to " << bound;
            }
        }
    }
}

TEST(PcntDecode, ABoundBehindTheNulBoundsNothing) {
    GuardedText const guarded("a%41");
    EXPECT_EQ(PcntDecode(guarded.c_str(), guarded.c_str() + 100), "aA");
}

TEST(PcntDecode, EveryShortTextDecodesByTheRulesUpToEveryBound) {
    for (std::string const& text : AllTexts("%u04eG", 5)) {
        GuardedText const guarded(text);
        for (std::size_t bound = 0; bound <= text.size(); ++bound) {
            ASSERT_EQ(PcntDecode(guarded.c_str(), guarded.c_str() + bound), ByTheRules(text, bound))
                << text << " up to " << bound;
        }
    }
}

TEST(PcntDecode, AnyTextDecodesByTheRules) {
    for (std::string const& text : RandomTexts("%%%%uu0123456789aAfFgG&+=/", 40, 20000)) {
        ASSERT_EQ(Decoded(text), ByTheRules(text, text.size())) << text;
    }
    for (std::string const& text : RandomTexts(AllBytes() + std::string(64, '%'), 60, 5000)) {
        ASSERT_EQ(Decoded(text), ByTheRules(text, text.size())) << text;
    }
}

TEST(PcntDecode, RunsOfAnyLengthStandBetweenEscapes) {
    for (std::string const escape : {"%7e", "%4", "%u20AC", "%u4%41", "%"}) {
        for (std::string const& text : TextsOfRuns(escape, 34)) {
            ASSERT_EQ(Decoded(GuardedText(text).c_str()), ByTheRules(text, text.size())) << text;
        }
    }
}

TEST(PcntDecode, ABoundMayStandAnywhereInALongerText) {
    std::string const text = "abcdefghijklm%u20ACnopqrstuvw%41%42%u1%u00e9xyz%4+123456789012%uFFFF";
    GuardedText const guarded(text);
    for (std::size_t bound = 0; bound <= text.size(); ++bound) {
        EXPECT_EQ(PcntDecode(guarded.c_str(), guarded.c_str() + bound), ByTheRules(text, bound))
            << bound;
    }
}

TEST(PcntDecode, ABoundBeforeTheTextLeavesNothing) {
    std::string const text = "abc";
    EXPECT_EQ(PcntDecode(text.c_str() + 2, text.c_str() + 1), "");
}

TEST(PcntDecode, ALongTextIsDecodedToItsEnd) {
    for (std::string const& text : LongTexts("\xFF+")) {
        ASSERT_EQ(Decoded(text), text);
        ASSERT_EQ(Decoded(text + "%41"), text + "A");
    }
}

}  // namespace
