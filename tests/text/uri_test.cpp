#include <algorithm>
#include <sstream>

#include "support/page_test.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using UriTest = PageTest;

// What `ParseUri` gives back, and what it reports.
struct Parsed {
    std::string dir;
    std::string page;
    UriArgs args;
    Texts reports;  // without "Invalid URI", which follows them
};

// Takes a URI apart by the rules and not as the code does it.
Parsed ByTheRules(std::string const& uri) {
    Parsed parsed;
    std::string::const_reverse_iterator const slash = std::find(uri.rbegin(), uri.rend(), '/');
    parsed.dir.assign(uri.begin(), slash.base());
    std::string::const_iterator const question = std::find(slash.base(), uri.end(), '?');
    parsed.page.assign(slash.base(), question);
    if (question == uri.end()) {
        return parsed;
    }
    // A stream ends a line at its end as well, so the last field gets a mark of its own.
    std::istringstream fields(std::string(question + 1, uri.end()) + "&");
    for (std::string field; std::getline(fields, field, '&');) {
        std::istringstream parts(field);
        std::string name;
        std::getline(parts, name, '=');
        bool const hasEquals = field.find('=') != std::string::npos;
        if (!hasEquals) {
            parsed.reports.push_back("URI arg missing =");
        }
        if (parsed.args.count(name) != 0) {
            parsed.reports.push_back("Redundant arg " + name);
        }
        parsed.args[name] = hasEquals ? field.substr(name.size() + 1) : "";
    }
    return parsed;
}

// Parses `uri` into outputs that hold something, and expects `row` and nothing else.
void Expect(std::string const& uri, Parsed const& row) {
    SCOPED_TRACE(uri);
    Platform() = RecordingPlatform();
    debugMsgs = Div();
    std::string dir = "old";
    std::string page = "old";
    UriArgs args = {{"old", "old"}};
    EXPECT_EQ(ParseUri(uri, dir, page, args), !row.reports.empty());
    EXPECT_EQ(dir, row.dir);
    EXPECT_EQ(page, row.page);
    EXPECT_EQ(args, row.args);

    Texts reports = row.reports;
    if (!reports.empty()) {
        reports.push_back("Invalid URI: " + uri);
    }
    ASSERT_EQ(Platform().log.size(), reports.size());
    Texts entries;
    Texts lines;
    for (std::size_t i = 0; i < reports.size(); ++i) {
        entries.push_back("log warn src/text/uri.cpp: " + reports[i]);
        lines.push_back("At src/text/uri.cpp:" + std::to_string(Platform().log[i].line) +
                        ": LOGWARN: " + reports[i]);
    }
    EXPECT_EQ(Platform().trace, entries);
    EXPECT_EQ(DebugLines(), lines);
}

TEST_F(UriTest, AUriIsTakenApartAndItsProblemsAreReported) {
    struct Row {
        std::string uri;
        Parsed parsed;
    };
    std::string const missing = "URI arg missing =";
    for (Row const& row : std::vector<Row>{
             {"", {"", "", {}, {}}},
             {"page", {"", "page", {}, {}}},
             {"/", {"/", "", {}, {}}},
             {"//a/", {"//a/", "", {}, {}}},
             {"/a/b/page.html?x=1&y=2", {"/a/b/", "page.html", {{"x", "1"}, {"y", "2"}}, {}}},
             {"page?x=1", {"", "page", {{"x", "1"}}, {}}},
             {"?x=1", {"", "", {{"x", "1"}}, {}}},
             {"/p?a=b=c", {"/", "p", {{"a", "b=c"}}, {}}},
             {"/p?=v", {"/", "p", {{"", "v"}}, {}}},
             {"/p?=", {"/", "p", {{"", ""}}, {}}},
             {"/p?a=", {"/", "p", {{"a", ""}}, {}}},
             {"/p?a=1#f", {"/", "p", {{"a", "1#f"}}, {}}},
             {"/p?a?b=1", {"/", "p", {{"a?b", "1"}}, {}}},
             {"/a?b/c?d=1", {"/a?b/", "c", {{"d", "1"}}, {}}},
             {"/p&a=1", {"/", "p&a=1", {}, {}}},
             {"/p?", {"/", "p", {{"", ""}}, {missing}}},
             {"/p?flag", {"/", "p", {{"flag", ""}}, {missing}}},
             {"/p?a=1&", {"/", "p", {{"", ""}, {"a", "1"}}, {missing}}},
             {"/p?a=1&&b=2", {"/", "p", {{"", ""}, {"a", "1"}, {"b", "2"}}, {missing}}},
             {"/p?flag&a=1", {"/", "p", {{"a", "1"}, {"flag", ""}}, {missing}}},
             {"/p?a=1&a=2", {"/", "p", {{"a", "2"}}, {"Redundant arg a"}}},
             {"/p?a=1&a=1&a=3", {"/", "p", {{"a", "3"}}, {"Redundant arg a", "Redundant arg a"}}},
             {"/p?a=1&a", {"/", "p", {{"a", ""}}, {missing, "Redundant arg a"}}},
             {"/p?a&a=1", {"/", "p", {{"a", "1"}}, {missing, "Redundant arg a"}}},
             {"/p?&", {"/", "p", {{"", ""}}, {missing, missing, "Redundant arg "}}}}) {
        Expect(row.uri, row.parsed);
    }
}

TEST_F(UriTest, TheLastSlashIsLookedForInTheQueryToo) {
    Expect("/dir/page?ret=/home", {"/dir/page?ret=/", "home", {}, {}});
    Expect("/p?a=1&b=/q?c=2", {"/p?a=1&b=/", "q", {{"c", "2"}}, {}});
    Expect("/p?flag&a=/", {"/p?flag&a=/", "", {}, {}});
}

TEST_F(UriTest, NamesAndValuesStayAsTheyAreWritten) {
    Expect("/p?x=%41+b", {"/", "p", {{"x", "%41+b"}}, {}});
    Expect("/%70?%78+=+%zz", {"/", "%70", {{"%78+", "+%zz"}}, {}});
}

TEST_F(UriTest, ANulIsAByteLikeAnyOtherButCutsTheReports) {
    std::string dir;
    std::string page;
    UriArgs args;
    EXPECT_TRUE(ParseUri(std::string("/d\0/p?a\0", 8), dir, page, args));
    EXPECT_EQ(dir, std::string("/d\0/", 4));
    EXPECT_EQ(page, "p");
    EXPECT_EQ(args, (UriArgs{{std::string("a\0", 2), ""}}));
    EXPECT_EQ(Platform().log.at(1).message, "Invalid URI: /d");
}

TEST_F(UriTest, AnyUriIsTakenApartByTheRules) {
    for (std::string const& uri : AllTexts("/?&=a", 5)) {
        Expect(uri, ByTheRules(uri));
    }
    for (std::string const& uri : RandomTexts("/?&&&===abc%+#;\x80", 40, 1000)) {
        Expect(uri, ByTheRules(uri));
        Expect("/p?" + uri, ByTheRules("/p?" + uri));
    }
}

TEST_F(UriTest, ReportsKeepTheirFormats) {
    std::string dir;
    std::string page;
    UriArgs args;
    EXPECT_TRUE(ParseUri("/p?%d=1&%d", dir, page, args));
    ASSERT_EQ(Platform().log.size(), 3U);
    EXPECT_EQ(Platform().log[0].format, "URI arg missing =");
    EXPECT_EQ(Platform().log[1].format, "Redundant arg %s");
    EXPECT_EQ(Platform().log[2].format, "Invalid URI: %s");
}

TEST_F(UriTest, TheUriMayBeAnOutput) {
    std::string const uri = "/directory/a page with a long name?x=1&a long argument's name=2";
    std::string const directory = "/directory/";
    std::string const name = "a page with a long name";
    UriArgs const both = {{"a long argument's name", "2"}, {"x", "1"}};
    std::string other;
    UriArgs args;

    std::string text = uri;
    EXPECT_FALSE(ParseUri(text, text, other, args)) << "the directory";
    EXPECT_EQ(text, directory);
    EXPECT_EQ(other, name);
    EXPECT_EQ(args, both);

    text = uri;
    EXPECT_FALSE(ParseUri(text, other, text, args)) << "the page";
    EXPECT_EQ(other, directory);
    EXPECT_EQ(text, name);
    EXPECT_EQ(args, both);

    args = {{"x", uri}};
    EXPECT_FALSE(ParseUri(args["x"], other, text, args)) << "a value among the arguments";
    EXPECT_EQ(other, directory);
    EXPECT_EQ(text, name);
    EXPECT_EQ(args, both);

    args = {{uri, "x"}};
    EXPECT_FALSE(ParseUri(args.begin()->first, other, text, args)) << "a name among them";
    EXPECT_EQ(other, directory);
    EXPECT_EQ(text, name);
    EXPECT_EQ(args, both);
}

TEST_F(UriTest, ABadUriThatIsAnOutputIsReportedWhole) {
    std::string text = "/d/p?a";
    std::string page;
    UriArgs args;
    EXPECT_TRUE(ParseUri(text, text, page, args));
    EXPECT_EQ(Platform().log.at(1).message, "Invalid URI: /d/p?a");
    EXPECT_EQ(text, "/d/");
}

TEST_F(UriTest, ArgumentsAreAppendedBehindTheRightSeparator) {
    struct Row {
        std::string uri;
        std::string args;
        std::string result;
    };
    for (Row const& row :
         {Row{"/p", "x=1", "/p?x=1"}, Row{"/p?y=2", "x=1", "/p?y=2&x=1"}, Row{"/p", "", "/p?"},
          Row{"/p?", "", "/p?&"}, Row{"", "a b", "?a b"}, Row{"/p&a", "%+", "/p&a?%+"},
          Row{"/a?b/c", "d", "/a?b/c&d"}, Row{"/p", "?x", "/p??x"}}) {
        EXPECT_EQ(AppendUriArgs(row.uri, row.args), row.result);
    }
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(UriTest, WhatIsAppendedMayHoldANul) {
    std::string const nul(1, '\0');
    EXPECT_EQ(AppendUriArgs("/a" + nul + "b", "c" + nul + "d"), "/a" + nul + "b?c" + nul + "d");
}

}  // namespace
