#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using UriTest = PageTest;

TEST_F(UriTest, AUriIsTakenApartAndItsProblemsAreReported) {
    struct Row {
        std::string uri;
        std::string dir;
        std::string page;
        UriArgs args;
        Texts reports;  // without "Invalid URI", which follows them
    };
    std::string const missing = "URI arg missing =";
    for (Row const& row : std::vector<Row>{
             {"", "", "", {}, {}},
             {"page", "", "page", {}, {}},
             {"/", "/", "", {}, {}},
             {"/a/b/page.html?x=1&y=2", "/a/b/", "page.html", {{"x", "1"}, {"y", "2"}}, {}},
             {"page?x=1", "", "page", {{"x", "1"}}, {}},
             {"/p?a=b=c", "/", "p", {{"a", "b=c"}}, {}},
             {"/p?x=%41+b", "/", "p", {{"x", "%41+b"}}, {}},
             {"/p?=v", "/", "p", {{"", "v"}}, {}},
             {"/p?a=1#f", "/", "p", {{"a", "1#f"}}, {}},
             {"/p?a?b=1", "/", "p", {{"a?b", "1"}}, {}},
             {"/a?b/c?d=1", "/a?b/", "c", {{"d", "1"}}, {}},
             {"/p?", "/", "p", {{"", ""}}, {missing}},
             {"/p?flag", "/", "p", {{"flag", ""}}, {missing}},
             {"/p?a=1&", "/", "p", {{"", ""}, {"a", "1"}}, {missing}},
             {"/p?a=1&&b=2", "/", "p", {{"", ""}, {"a", "1"}, {"b", "2"}}, {missing}},
             {"/p?flag&a=1", "/", "p", {{"a", "1"}, {"flag", ""}}, {missing}},
             {"/p?a=1&a=2", "/", "p", {{"a", "2"}}, {"Redundant arg a"}},
             {"/p?a=1&a", "/", "p", {{"a", ""}}, {missing, "Redundant arg a"}},
             {"/p?&", "/", "p", {{"", ""}}, {missing, missing, "Redundant arg "}}}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        std::string dir = "old";
        std::string page = "old";
        UriArgs args = {{"old", "old"}};
        bool const isBad = ParseUri(row.uri, dir, page, args);
        EXPECT_EQ(dir, row.dir) << row.uri;
        EXPECT_EQ(page, row.page) << row.uri;
        EXPECT_EQ(args, row.args) << row.uri;
        EXPECT_EQ(isBad, !row.reports.empty()) << row.uri;
        Texts expected;
        for (std::string const& report : row.reports) {
            expected.push_back("LOGWARN: " + report);
        }
        if (isBad) {
            expected.push_back("LOGWARN: Invalid URI: " + row.uri);
        }
        EXPECT_EQ(DebugMessages(), expected);
    }
}

TEST_F(UriTest, TheLastSlashIsLookedForInTheQueryToo) {
    std::string dir;
    std::string page;
    UriArgs args;
    EXPECT_FALSE(ParseUri("/dir/page?ret=/home", dir, page, args));
    EXPECT_EQ(dir, "/dir/page?ret=/");
    EXPECT_EQ(page, "home");
    EXPECT_EQ(args, UriArgs());
}

TEST_F(UriTest, ReportsKeepTheirFormats) {
    std::string dir;
    std::string page;
    UriArgs args;
    EXPECT_TRUE(ParseUri("/p?a=1&a", dir, page, args));
    ASSERT_EQ(Platform().log.size(), 3U);
    EXPECT_EQ(Platform().log[0].format, "URI arg missing =");
    EXPECT_EQ(Platform().log[1].format, "Redundant arg %s");
    EXPECT_EQ(Platform().log[2].format, "Invalid URI: %s");
    EXPECT_EQ(Platform().log[2].file, "src/text/uri.cpp");
}

TEST_F(UriTest, TheUriMayBeAnOutput) {
    std::string const uri = "/directory/a page with a long name?x=1";
    std::string text = uri;
    std::string other;
    UriArgs args;
    ParseUri(text, text, other, args);
    EXPECT_EQ(text, "/directory/");
    EXPECT_EQ(other, "a page with a long name");
    EXPECT_EQ(args, (UriArgs{{"x", "1"}}));

    text = uri;
    ParseUri(text, other, text, args);
    EXPECT_EQ(text, "a page with a long name");
    EXPECT_EQ(other, "/directory/");

    args = {{"x", uri}};
    ParseUri(args["x"], other, text, args);
    EXPECT_EQ(args, (UriArgs{{"x", "1"}}));
    EXPECT_EQ(other, "/directory/");
}

TEST_F(UriTest, ArgumentsAreAppendedBehindTheRightSeparator) {
    EXPECT_EQ(AppendUriArgs("/p", "x=1"), "/p?x=1");
    EXPECT_EQ(AppendUriArgs("/p?y=2", "x=1"), "/p?y=2&x=1");
    EXPECT_EQ(AppendUriArgs("/p", ""), "/p?");
    EXPECT_EQ(AppendUriArgs("/p?", ""), "/p?&");
    EXPECT_EQ(AppendUriArgs("", "a b"), "?a b");
}

}  // namespace
