#include "support/page_test.hpp"

using namespace Quillo;

namespace {

using FilterTest = PageTest;

TEST_F(FilterTest, MarkupBecomesEntitiesAndNothingElseChanges) {
    struct Row {
        std::string text;
        std::string filtered;
    };
    for (Row const& row :
         {Row{"", ""}, Row{"a<b>&\"c'", "a&lt;b&gt;&amp;&quot;c'"}, Row{"&amp;", "&amp;amp;"},
          Row{"\t\n", "\t\n"}, Row{"\xC3\xA9", "\xC3\xA9"}, Row{"\xFF\x80", "\xFF\x80"},
          Row{std::string("ab\0cd", 5), "ab"}}) {
        EXPECT_EQ(Filter(row.text), row.filtered);
        EXPECT_EQ(Filter(row.text.c_str()), row.filtered);
    }
    EXPECT_EQ(Platform().log.size(), 0U);
}

TEST_F(FilterTest, ANullPointerIsAnEmptyText) {
    EXPECT_EQ(Filter(static_cast<char const*>(nullptr)), "");
    EXPECT_EQ(Platform().log.size(), 0U);
}

// What each of the 255 bytes becomes, from the rules and not from the code.
std::string Expected(int byte) {
    switch (byte) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        default:
            break;
    }
    bool const isControl = (byte < 0x20 && byte != 0x09 && byte != 0x0A) || byte == 0x7F;
    return isControl ? "_" : std::string(1, static_cast<char>(byte));
}

TEST_F(FilterTest, EveryByteIsKeptEscapedOrReported) {
    for (int byte = 1; byte < 256; ++byte) {
        Platform() = RecordingPlatform();
        std::string const text(1, static_cast<char>(byte));
        EXPECT_EQ(Filter(text), Expected(byte)) << byte;
        ASSERT_EQ(Platform().log.size(), Expected(byte) == "_" && byte != '_' ? 1U : 0U) << byte;
        if (!Platform().log.empty()) {
            EXPECT_EQ(Platform().log[0].message, "Don't know tag for '" + text + "'");
            EXPECT_EQ(Platform().log[0].format, "Don't know tag for '%c'");
            EXPECT_EQ(Platform().log[0].level, "warn");
            EXPECT_EQ(Platform().log[0].file, "src/text/filter.cpp");
        }
    }
}

TEST_F(FilterTest, ACarriageReturnIsReportedAndTheLineFeedBehindItKept) {
    EXPECT_EQ(Filter("line1\r\nline2"), "line1_\nline2");
    EXPECT_EQ(DebugMessages(), (std::vector<std::string>{"LOGWARN: Don't know tag for '\r'"}));
}

TEST_F(FilterTest, EachControlByteIsReportedOnItsOwn) {
    EXPECT_EQ(Filter("\x01\x02"
                     "a\x7F\x01\v"),
              "__a___");
    EXPECT_EQ(Platform().log.size(), 5U);
}

}  // namespace
