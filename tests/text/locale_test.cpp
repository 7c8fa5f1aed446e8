// Letters and digits are those of the process's locale. The 8-bit locale is made by the build; a
// machine that cannot make it skips the tests that need it.
#include <clocale>

#include "support/page_test.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

// The C locale before and after, and Latin-1 on demand.
class LocaleTest : public PageTest {
protected:
    LocaleTest() { std::setlocale(LC_ALL, "C"); }
    ~LocaleTest() override { std::setlocale(LC_ALL, "C"); }

    static bool TakeLatin1() { return std::setlocale(LC_CTYPE, "de_DE.ISO-8859-1") != nullptr; }
};

#define TAKE_LATIN1_OR_SKIP()                                                                \
    if (!TakeLatin1()) {                                                                     \
        if (QUILLO_HAS_LATIN1) {                                                             \
            FAIL() << "the locale that the build made was not found; LOCPATH is its folder"; \
        }                                                                                    \
        GTEST_SKIP() << "no locale de_DE.ISO-8859-1: localedef or its sources are absent";   \
    }                                                                                        \
    static_cast<void>(0)

// The letters from 0x80 up in ISO 8859-1, as the standard names them: the two ordinal indicators,
// the micro sign, and all of the last four rows but the signs of multiplication and division.
bool IsLatin1Letter(int byte) {
    return byte == 0xAA || byte == 0xB5 || byte == 0xBA ||
           (byte >= 0xC0 && byte != 0xD7 && byte != 0xF7);
}

TEST_F(LocaleTest, InTheCLocaleNoByteFrom80UpIsALetter) {
    for (int byte = 0x80; byte < 0x100; ++byte) {
        std::string const text(1, static_cast<char>(byte));
        EXPECT_EQ(PcntEncode(text).size(), 3U) << byte;
        EXPECT_EQ(Filter(text), text) << byte;
    }
    EXPECT_EQ(PcntEncode("\xE9"), "%E9");
}

TEST_F(LocaleTest, PcntEncodeLeavesTheLettersOfAnEightBitLocaleAlone) {
    TAKE_LATIN1_OR_SKIP();
    EXPECT_EQ(PcntEncode("\xE9"), "\xE9");
    EXPECT_EQ(PcntEncode(std::string("\xE9")), "\xE9");
    EXPECT_EQ(PcntEncode("\xD7"), "%D7") << "the multiplication sign is no letter";
    for (int byte = 0x80; byte < 0x100; ++byte) {
        std::string const text(1, static_cast<char>(byte));
        EXPECT_EQ(PcntEncode(text) == text, IsLatin1Letter(byte)) << byte;
    }
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(PcntEncode("\xE9"), "%E9") << "the locale is asked on every call";
}

TEST_F(LocaleTest, BytesBelow80AreTakenAlikeInBothLocales) {
    std::string const ascii = AllBytes().substr(0, 0x7F);
    std::string const encoded = PcntEncode(ascii);
    std::string const filtered = Filter(ascii);
    TAKE_LATIN1_OR_SKIP();
    EXPECT_EQ(PcntEncode(ascii), encoded);
    EXPECT_EQ(Filter(ascii), filtered);
}

TEST_F(LocaleTest, WhatIsFilteredDecodedAndSlashedDoesNotDependOnTheLocale) {
    std::string const high = AllBytes().substr(0x7F);
    TAKE_LATIN1_OR_SKIP();
    EXPECT_EQ(Filter(high + "<\xD7"), high + "&lt;\xD7");
    EXPECT_EQ(PcntDecode("%E9\xE9%\xE9", nullptr), "\xE9\xE9") << "no letter is a digit";
    EXPECT_EQ(PcntDecode(PcntEncode(high).c_str(), nullptr), high);
    EXPECT_EQ(AddSlashes(high), high);
    EXPECT_EQ(EscapeJavascriptString(high), high);
    EXPECT_TRUE(IsLessUtf8Collate("z", "\xE4"));
    EXPECT_FALSE(IsLessUtf8Collate("\xE4", "z"));
    EXPECT_EQ(Platform().Trace(), "");
}

}  // namespace
