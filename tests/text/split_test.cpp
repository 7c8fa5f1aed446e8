#include <gtest/gtest.h>

#include <quillo>
#include <random>

using namespace Quillo;

namespace {

typedef std::vector<std::string> Fields;

TEST(Split, CutsAtEveryDelimiterByte) {
    struct Row {
        char const* text;
        char const* delimiters;
        SplitMode mode;
        Fields fields;
    };
    for (Row const& row : std::vector<Row>{{"a,b,c", ",", SkipEmpty, {"a", "b", "c"}},
                                           {"a,,b", ",", SkipEmpty, {"a", "b"}},
                                           {"a,,b", ",", KeepEmpty, {"a", "", "b"}},
                                           {",a", ",", SkipEmpty, {"a"}},
                                           {",a", ",", KeepEmpty, {"", "a"}},
                                           {"a,", ",", SkipEmpty, {"a"}},
                                           {"a,", ",", KeepEmpty, {"a"}},
                                           {"a,,", ",", KeepEmpty, {"a", ""}},
                                           {",", ",", KeepEmpty, {""}},
                                           {",", ",", SkipEmpty, {}},
                                           {"a;b c", "; ", SkipEmpty, {"a", "b", "c"}},
                                           {"a; b", "; ", KeepEmpty, {"a", "", "b"}},
                                           {"", ",", SkipEmpty, {}},
                                           {"", ",", KeepEmpty, {}},
                                           {nullptr, ",", SkipEmpty, {}},
                                           {nullptr, ",", KeepEmpty, {}},
                                           {"abc", "", SkipEmpty, {"abc"}},
                                           {"a,,b", ",", static_cast<SplitMode>(2), {"a", "b"}},
                                           {"a,,b", ",", static_cast<SplitMode>(-1), {"a", "b"}},
                                           {"\xC3\xA9,b", ",", SkipEmpty, {"\xC3\xA9", "b"}}}) {
        Fields fields = {"old", "fields"};
        Split(row.text, row.delimiters, fields, row.mode);
        EXPECT_EQ(fields, row.fields) << Cstr(row.text);
        if (row.text != nullptr) {
            Split(std::string(row.text), row.delimiters, fields, row.mode);
            EXPECT_EQ(fields, row.fields) << row.text;
        }
    }
}

TEST(Split, ANulEndsTheTextAndTheDelimiters) {
    Fields fields;
    Split(std::string("a,b\0,c", 6), ",", fields, KeepEmpty);
    EXPECT_EQ(fields, (Fields{"a", "b"}));
    Split("a;b,c", std::string(",\0;", 3), fields, SkipEmpty);
    EXPECT_EQ(fields, (Fields{"a;b", "c"}));
}

TEST(Split, TheTextAndTheDelimitersMayLieInTheFields) {
    Fields fields = {"one,two,a field that is too long to be kept in place", ","};
    Split(fields[0], fields[1], fields, SkipEmpty);
    EXPECT_EQ(fields, (Fields{"one", "two", "a field that is too long to be kept in place"}));
    Split(fields[0].c_str(), "n", fields, SkipEmpty);
    EXPECT_EQ(fields, (Fields{"o", "e"}));
}

TEST(IsLessUtf8Collate, ComparesBytesAndThenLengths) {
    struct Row {
        std::string a;
        std::string b;
        bool isLess;
    };
    for (Row const& row :
         {Row{"B", "a", true}, Row{"a", "B", false}, Row{"ab", "abc", true},
          Row{"abc", "ab", false}, Row{"abc", "abc", false}, Row{"", "a", true}, Row{"", "", false},
          Row{"\xC3\xA9", "z", false}, Row{"z", "\xC3\xA9", true},
          Row{std::string("a\0a", 3), std::string("a\0b", 3), true},
          Row{std::string("a\0", 2), "a", false}}) {
        EXPECT_EQ(IsLessUtf8Collate(row.a, row.b), row.isLess) << row.a << " " << row.b;
    }
}

TEST(IsLessUtf8Collate, IsTheOrderOfUnsignedBytes) {
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        std::vector<unsigned char> a(random() % 4);
        std::vector<unsigned char> b(random() % 4);
        for (unsigned char& byte : a) {
            byte = static_cast<unsigned char>(random() % 256);
        }
        for (unsigned char& byte : b) {
            byte =
                static_cast<unsigned char>(random() % 2 == 0 || a.empty() ? random() % 256 : a[0]);
        }
        EXPECT_EQ(
            IsLessUtf8Collate(std::string(a.begin(), a.end()), std::string(b.begin(), b.end())),
            a < b);
    }
}

TEST(Cstr, IsTheTextItselfOrAnEmptyOne) {
    char const text[] = "text";
    EXPECT_EQ(Cstr(text), text);
    EXPECT_STREQ(Cstr(nullptr), "");
    EXPECT_EQ(Cstr(nullptr), Cstr(nullptr)) << "static";
}

}  // namespace
