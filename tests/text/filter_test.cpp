#include "support/guarded_text.hpp"
#include "support/page_test.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using FilterTest = PageTest;

// Whether a byte is replaced, from the rules and not from the code.
bool IsReplaced(char c) {
    int const byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && byte != 0x09 && byte != 0x0A) || byte == 0x7F;
}

// What a byte becomes.
std::string Filtered(char c) {
    switch (c) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        default:
            return IsReplaced(c) ? "_" : std::string(1, c);
    }
}

TEST_F(FilterTest, MarkupBecomesEntitiesAndNothingElseChanges) {
    struct Row {
        std::string text;
        std::string filtered;
    };
    for (Row const& row :
         {Row{"", ""}, Row{"a<b>&\"c'", "a&lt;b&gt;&amp;&quot;c'"}, Row{"\t\n", "\t\n"},
          Row{"\xC3\xA9", "\xC3\xA9"}, Row{"\xFF\x80", "\xFF\x80"}, Row{"_", "_"},
          Row{" ~!#$%'()*+,-./:;=?@[\\]^`{|}", " ~!#$%'()*+,-./:;=?@[\\]^`{|}"}}) {
        EXPECT_EQ(Filter(row.text), row.filtered);
        EXPECT_EQ(Filter(row.text.c_str()), row.filtered);
    }
    EXPECT_EQ(Platform().Trace(), "");
    EXPECT_EQ(DebugLines(), Texts());
}

TEST_F(FilterTest, EscapedTextIsEscapedASecondTime) {
    EXPECT_EQ(Filter("&amp;"), "&amp;amp;");
    EXPECT_EQ(Filter("&#60;&lt"), "&amp;#60;&amp;lt");
}

TEST_F(FilterTest, ANullPointerIsAnEmptyText) {
    EXPECT_EQ(Filter(static_cast<char const*>(nullptr)), "");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(FilterTest, ANulCutsAString) {
    EXPECT_EQ(Filter(std::string("ab\0cd", 5)), "ab");
    EXPECT_EQ(Filter(std::string("\0\x01", 2)), "");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(FilterTest, EveryByteIsKeptEscapedOrReported) {
    for (char const c : AllBytes()) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        EXPECT_EQ(Filter(std::string(1, c)), Filtered(c));
        if (!IsReplaced(c)) {
            EXPECT_EQ(Platform().Trace(), "");
            EXPECT_EQ(DebugLines(), Texts());
            continue;
        }
        std::string const message = "Don't know tag for '" + std::string(1, c) + "'";
        EXPECT_EQ(Platform().Trace(), "log warn src/text/filter.cpp: " + message + "\n");
        LogEntry const& entry = Platform().log.at(0);
        EXPECT_EQ(entry.format, "Don't know tag for '%c'");
        EXPECT_EQ(DebugLines(), (Texts{"At src/text/filter.cpp:" + std::to_string(entry.line) +
                                       ": LOGWARN: " + message}));
    }
}

TEST_F(FilterTest, ACarriageReturnIsReportedAndTheLineFeedBehindItKept) {
    EXPECT_EQ(Filter("line1\r\nline2"), "line1_\nline2");
    EXPECT_EQ(DebugMessages(), (Texts{"LOGWARN: Don't know tag for '\r'"}));
}

TEST_F(FilterTest, EachControlByteIsReportedOnItsOwnAndInOrder) {
    EXPECT_EQ(Filter("\x01<\x02"
                     "a\x7F\x01\v"),
              "_&lt;_a___");
    EXPECT_EQ(Platform().Messages(),
              (Texts{"warn: Don't know tag for '\x01'", "warn: Don't know tag for '\x02'",
                     "warn: Don't know tag for '\x7F'", "warn: Don't know tag for '\x01'",
                     "warn: Don't know tag for '\v'"}));
}

TEST_F(FilterTest, NoStateIsCarriedFromOneByteToTheNext) {
    for (std::string const& text : RandomTexts(AllBytes() + "<>&\"\"&amp;&lt;;#", 40, 1000)) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        std::string expected;
        Texts reports;
        for (char const c : text) {
            expected += Filtered(c);
            if (IsReplaced(c)) {
                reports.push_back("warn: Don't know tag for '" + std::string(1, c) + "'");
            }
        }
        ASSERT_EQ(Filter(text), expected);
        ASSERT_EQ(Platform().Messages(), reports);
    }
}

TEST_F(FilterTest, NeverReadsPastTheEndOfTheText) {
    for (std::string const& text : Texts{"", "a", "&", "<", "\xC3", "a<b>&\"c'"}) {
        EXPECT_EQ(Filter(GuardedText(text).c_str()), Filter(text));
    }
}

}  // namespace
