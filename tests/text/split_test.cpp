#include <gtest/gtest.h>

#include <numeric>
#include <quillo>

#include "support/guarded_text.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Fields;

Fields SplitAt(std::string const& text, std::string const& delimiters, SplitMode mode) {
    Fields fields = {"old", "fields"};
    Split(text, delimiters, fields, mode);
    return fields;
}

// The fields of a text by the rules: every delimiter byte ends one field, and so does the end of
// the text, unless nothing stands before it.
Fields ByTheRules(std::string const& text, std::string const& delimiters, SplitMode mode) {
    Fields fields;
    std::string field;
    for (char const c : text) {
        if (delimiters.find(c) == std::string::npos) {
            field += c;
            continue;
        }
        if (mode == KeepEmpty || !field.empty()) {
            fields.push_back(field);
        }
        field.clear();
    }
    if (!field.empty()) {
        fields.push_back(field);
    }
    return fields;
}

TEST(Split, CutsAtEveryDelimiterByte) {
    struct Row {
        char const* text;
        char const* delimiters;
        Fields skipped;  // SkipEmpty
        Fields kept;     // KeepEmpty
    };
    for (Row const& row :
         std::vector<Row>{{"a,b,c", ",", {"a", "b", "c"}, {"a", "b", "c"}},
                          {"a,,b", ",", {"a", "b"}, {"a", "", "b"}},
                          {"a,,,b", ",", {"a", "b"}, {"a", "", "", "b"}},
                          {",a", ",", {"a"}, {"", "a"}},
                          {"a,", ",", {"a"}, {"a"}},
                          {"a,,", ",", {"a"}, {"a", ""}},
                          {",", ",", {}, {""}},
                          {",,", ",", {}, {"", ""}},
                          {"a;b c", "; ", {"a", "b", "c"}, {"a", "b", "c"}},
                          {"a; b", "; ", {"a", "b"}, {"a", "", "b"}},
                          {"", ",", {}, {}},
                          {nullptr, ",", {}, {}},
                          {nullptr, "", {}, {}},
                          {"abc", "", {"abc"}, {"abc"}},
                          {"abc", "xyz", {"abc"}, {"abc"}},
                          {"\xC3\xA9,\xFF", ",\xFF", {"\xC3\xA9"}, {"\xC3\xA9", ""}}}) {
        for (SplitMode const mode : {SkipEmpty, KeepEmpty}) {
            Fields const& expected = mode == KeepEmpty ? row.kept : row.skipped;
            Fields fields = {"old", "fields"};
            Split(row.text, row.delimiters, fields, mode);
            EXPECT_EQ(fields, expected) << Cstr(row.text);
            if (row.text != nullptr) {
                EXPECT_EQ(SplitAt(row.text, row.delimiters, mode), expected) << row.text;
            }
        }
    }
}

TEST(Split, AnyOtherModeSkipsEmptyFields) {
    EXPECT_EQ(int{SkipEmpty}, 0);
    EXPECT_EQ(int{KeepEmpty}, 1);
    EXPECT_EQ(sizeof(SplitMode), sizeof(int));
    for (int const mode : {2, -1, 256, 257, -2147483647}) {
        EXPECT_EQ(SplitAt(",a,,b", ",", static_cast<SplitMode>(mode)), (Fields{"a", "b"}));
    }
}

TEST(Split, ANulCutsTheTextAndTheDelimiters) {
    EXPECT_EQ(SplitAt(std::string("a,b\0,c", 6), ",", KeepEmpty), (Fields{"a", "b"}));
    EXPECT_EQ(SplitAt(std::string("\0a", 2), ",", KeepEmpty), Fields());
    EXPECT_EQ(SplitAt("a;b,c", std::string(",\0;", 3), SkipEmpty), (Fields{"a;b", "c"}));
}

TEST(Split, AnyTextIsSplitByTheRules) {
    for (std::string const& text : AllTexts(",;a", 6)) {
        GuardedText const guarded(text);
        for (std::string const& delimiters : Fields{",", ",;", "", ";;", "a"}) {
            for (SplitMode const mode : {SkipEmpty, KeepEmpty}) {
                Fields fields;
                Split(guarded.c_str(), delimiters, fields, mode);
                ASSERT_EQ(fields, ByTheRules(text, delimiters, mode)) << text << " " << delimiters;
            }
        }
    }
    Fields const samples = RandomTexts(AllBytes() + std::string(64, ' '), 80, 1000);
    for (std::size_t i = 1; i < samples.size(); ++i) {
        std::string const delimiters = samples[i - 1].substr(0, 9) + " ";
        for (SplitMode const mode : {SkipEmpty, KeepEmpty}) {
            ASSERT_EQ(SplitAt(samples[i], delimiters, mode),
                      ByTheRules(samples[i], delimiters, mode));
        }
    }
}

TEST(Split, KeptFieldsJoinToTheTextButForADelimiterAtItsEnd) {
    for (std::string const& text : AllTexts(",ab", 6)) {
        Fields const fields = SplitAt(text, ",", KeepEmpty);
        std::string const joined = std::accumulate(
            fields.begin(), fields.end(), std::string(),
            [](std::string const& all, std::string const& field) { return all + field + ","; });
        bool const endsField = text.empty() || text.back() == ',';
        ASSERT_EQ(joined, endsField ? text : text + ",");
    }
}

TEST(Split, EveryByteCanBeADelimiter) {
    for (char const c : AllBytes()) {
        std::string const other(1, c == 'x' ? 'y' : 'x');
        EXPECT_EQ(SplitAt(other + c + other, std::string(1, c), KeepEmpty), (Fields{other, other}));
    }
}

// The texts are long enough to lie on the heap, so that a read of a freed one is found.
TEST(Split, TheTextAndTheDelimitersMayLieInTheFields) {
    std::string const text = "one,two,,a field that is too long to be kept in place";
    std::string const delimiters = ", a set of delimiters that is long as well";
    for (SplitMode const mode : {SkipEmpty, KeepEmpty}) {
        Fields const expected = SplitAt(text, delimiters, mode);
        Fields fields = {text, delimiters};
        Split(fields[0], fields[1], fields, mode);
        EXPECT_EQ(fields, expected) << "both";
        fields = {delimiters, "other", text};
        Split(fields[2].c_str(), fields[0], fields, mode);
        EXPECT_EQ(fields, expected) << "both, as a pointer";
        fields = {text};
        Split(fields[0], delimiters, fields, mode);
        EXPECT_EQ(fields, expected) << "the text";
        fields = {delimiters};
        Split(text, fields[0], fields, mode);
        EXPECT_EQ(fields, expected) << "the delimiters";
        fields = {text};
        Split(fields[0], fields[0], fields, SkipEmpty);
        EXPECT_EQ(fields, Fields()) << "one string as both";
        fields = {"x," + text};
        Split(fields[0].c_str() + 2, delimiters, fields, mode);
        EXPECT_EQ(fields, expected) << "the middle of a field";
    }
}

}  // namespace
