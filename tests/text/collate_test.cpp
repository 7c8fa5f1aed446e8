#include <gtest/gtest.h>

#include <algorithm>
#include <quillo>

#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

TEST(IsLessUtf8Collate, ComparesBytesAndThenLengths) {
    struct Row {
        std::string a;
        std::string b;
        bool isLess;
    };
    for (Row const& row :
         {Row{"B", "a", true}, Row{"a", "B", false}, Row{"ab", "abc", true},
          Row{"abc", "ab", false}, Row{"abc", "abc", false}, Row{"", "a", true}, Row{"", "", false},
          Row{"a", "", false}, Row{"\xC3\xA9", "z", false}, Row{"z", "\xC3\xA9", true},
          Row{"b", "abc", false}, Row{"abc", "b", true}, Row{"\x7F", "\x80", true},
          Row{"\xFF", "\x01", false}, Row{std::string("a\0a", 3), std::string("a\0b", 3), true},
          Row{std::string("a\0", 2), "a", false}, Row{"a", std::string("a\0", 2), true}}) {
        EXPECT_EQ(IsLessUtf8Collate(row.a, row.b), row.isLess) << row.a << " " << row.b;
    }
}

TEST(IsLessUtf8Collate, BytesBehindTheShorterTextDoNotCount) {
    std::string cut = "xzz";
    cut.resize(1);
    EXPECT_FALSE(IsLessUtf8Collate(std::string("x\0a", 3), cut));
}

TEST(IsLessUtf8Collate, IsTheOrderOfUnsignedBytes) {
    std::vector<std::string> const texts = AllTexts(std::string("\0a\x7F\x80\xFF", 5), 3);
    for (std::string const& a : texts) {
        for (std::string const& b : texts) {
            std::vector<unsigned char> const bytesA(a.begin(), a.end());
            std::vector<unsigned char> const bytesB(b.begin(), b.end());
            ASSERT_EQ(IsLessUtf8Collate(a, b), bytesA < bytesB);
        }
    }
}

TEST(IsLessUtf8Collate, SortsUtf8TextsByTheirCodePoints) {
    // U+0000 is left out; the others rise from one byte to four.
    std::vector<std::string> const rising = {"\x01",         "A",
                                             "\x7F",         "\xC2\x80",
                                             "\xC3\xA9",     "\xDF\xBF",
                                             "\xE0\xA0\x80", "\xE2\x82\xAC",
                                             "\xEF\xBF\xBF", "\xF0\x9F\x98\x80"};
    std::vector<std::string> texts(rising.rbegin(), rising.rend());
    std::sort(texts.begin(), texts.end(), IsLessUtf8Collate);
    EXPECT_EQ(texts, rising);
}

TEST(Cstr, IsTheTextItselfOrAnEmptyOne) {
    char const text[] = "text";
    char const empty[] = "";
    EXPECT_EQ(Cstr(text), text);
    EXPECT_EQ(Cstr(empty), empty);
    EXPECT_STREQ(Cstr(nullptr), "");
    EXPECT_EQ(Cstr(nullptr), Cstr(nullptr)) << "static";
}

}  // namespace
