// The log page: what it asks the log for, and how it shows what it is told.
#include "sample_page_test.hpp"

using namespace Quillo;

namespace {

class LogPageTest : public SamplePageTest {
protected:
    // From now on the log answers every search with these records.
    void Log(std::vector<std::vector<std::string>> const& records) {
        RecordedObject const object = {{"offset", "time", "process", "level", "source", "text"},
                                       records};
        Platform().onFormat = [object](ZOV_AppData*) { Platform().objects[Asked()] = object; };
    }

    // The object that was asked for last.
    static std::string Asked() {
        std::string const call = "loareq_set_object ";
        std::string object;
        for (std::string const& line : Platform().trace) {
            object = line.compare(0, call.size(), call) == 0 ? line.substr(call.size()) : object;
        }
        return object;
    }
};

bool Holds(std::string const& page, std::string const& text) {
    return page.find(text) != std::string::npos;
}

std::size_t Count(std::string const& page, std::string const& text) {
    return Replaced(page, text, text + "x").size() - page.size();
}

TEST_F(LogPageTest, AsksForWhatTheReaderAsksFor) {
    Log({{"0", "", "", "", "", ""}});
    struct Row {
        char const* arguments;
        char const* object;
    };
    for (Row const& row :
         {Row{nullptr, "log info end "}, Row{"level=warning", "log warning end "},
          Row{"level=error&text=a+b%26c", "log error end a b&c"},
          Row{"level=loud&text=%20x", "log info end  x"}, Row{"level=Error", "log info end "},
          Row{"before=4711&text=x", "log info 4711 x"}, Row{"before=end", "log info end "},
          Row{"before=-1", "log info end "}, Row{"before=1x", "log info end "},
          Row{"before=", "log info end "}, Row{"level=error%20end%20x", "log info end "}}) {
        Written("log", row.arguments);
        EXPECT_EQ(Asked(), row.object) << Cstr(row.arguments);
    }
}

TEST_F(LogPageTest, FormShowsWhatWasAskedFor) {
    std::string const first = Written("log");
    EXPECT_TRUE(Holds(first, "<option value=\"info\" selected=\"\">All entries</option>"));
    EXPECT_EQ(Count(first, "selected=\"\""), 1U);
    EXPECT_TRUE(Holds(first, " value=\"\""));
    Log({{"0", "", "", "", "", ""}});
    std::string const page = Written("log", "level=error&text=%22%3E%3Cb%3E%27&before=3");
    EXPECT_TRUE(Holds(page, "<option value=\"error\" selected=\"\">Errors</option>"));
    EXPECT_EQ(Count(page, "selected=\"\""), 1U);
    EXPECT_TRUE(Holds(page, " value=\"&quot;&gt;&lt;b&gt;&#39;\""));
}

TEST_F(LogPageTest, ShowsTheEntriesInTheirOrder) {
    std::string const page = Written("log");
    std::size_t const newest = page.find("<bdi>the newest: &lt;b&gt;</bdi>");
    std::size_t const free = page.find("<bdi>free text</bdi>");
    std::size_t const oldest = page.find("<bdi>the oldest</bdi>");
    EXPECT_LT(newest, free);
    EXPECT_LT(free, oldest);
    EXPECT_LT(oldest, page.size());
    EXPECT_TRUE(Holds(page,
                      "<bdi class=\"quantity\" title=\"2026-01-02T03:04:05.678+01:00\">"
                      "2026-01-02 03:04:05</bdi>"));
    EXPECT_TRUE(Holds(page, "<span class=\"error\">Error</span>"));
    EXPECT_TRUE(Holds(page, "<span>Other</span>"));
    EXPECT_TRUE(Holds(page, "<div class=\"beside\"><bdi>src/a.cpp:7 [4711]</bdi></div>"));
    EXPECT_EQ(Count(page, "<tr>"), 4U);
    EXPECT_EQ(Count(page, "class=\"beside\""), 2U);
}

TEST_F(LogPageTest, LinksToOlderEntriesAndBackKeepWhatWasAskedFor) {
    std::vector<std::string> const entry = {"7", "", "", "info", "", "x"};
    std::string const older =
        "<a href=\"/log?level=error&amp;text=a%26b%22&amp;before=3\">Older entries</a>";
    std::string const newest = "<a href=\"/log?level=error&amp;text=a%26b%22\">Newest entries</a>";
    struct Row {
        char const* before;
        char const* rest;
        bool hasNewest;
        bool hasOlder;
    };
    for (Row const& row : {Row{"", "3", false, true}, Row{"&before=9", "3", true, true},
                           Row{"&before=9", "0", true, false}, Row{"", "0", false, false}}) {
        Log({entry, {row.rest, "", "", "", "", ""}});
        std::string const arguments = std::string("level=error&text=a%26b%22") + row.before;
        std::string const page = Written("log", arguments.c_str());
        EXPECT_EQ(Holds(page, older), row.hasOlder) << row.before << " " << row.rest << page;
        EXPECT_EQ(Holds(page, newest), row.hasNewest) << row.before << " " << row.rest;
        EXPECT_EQ(Holds(page, "class=\"links\""), row.hasNewest || row.hasOlder);
    }
}

TEST_F(LogPageTest, SaysThatNoEntryMatchesAndStillLinksToOlderOnes) {
    Log({{"3", "", "", "", "", ""}});
    std::string const page = Written("log");
    EXPECT_TRUE(Holds(page, "There is no such entry in this part of the log."));
    EXPECT_TRUE(Holds(page, ">Older entries</a>"));
    EXPECT_FALSE(Holds(page, "<table"));
}

TEST_F(LogPageTest, SaysHowToGetALogWhereThereIsNone) {
    Platform().objects.clear();
    std::string const page = Written("log");
    EXPECT_TRUE(Holds(page, "The option --log-file of the page server names one."));
    EXPECT_TRUE(Holds(page, "<form "));
    EXPECT_FALSE(Holds(page, "<table"));
}

// Whatever came into the log is text: the page has the elements that it has with harmless entries.
TEST_F(LogPageTest, HostileEntriesAreText) {
    auto const tagsOf = [](std::string const& page) {
        std::string tags;
        for (std::size_t at = page.find('<'); at != std::string::npos;
             at = page.find('<', at + 1)) {
            tags += page.substr(at, page.find_first_of(" >", at) - at);
        }
        return tags;
    };
    Log({{"5", "time", "1", "info", "a", "b"}, {"7", "", "", "", "", ""}});
    std::string const harmless = tagsOf(Written("log"));
    for (std::string const hostile :
         {"<script>alert(1)</script>", "\"><img src=x onerror=alert(1)>", "'><b>",
          "</bdi></td><td>", "<!--", "]]>", "&lt;b&gt;", "\x1b[31m<b>", "\xff<b>", "%3Cb%3E",
          "</title><b>"}) {
        Log({{hostile, hostile, hostile, hostile, hostile, hostile},
             {hostile, "", "", "", "", ""}});
        std::string const page = Written("log");
        EXPECT_EQ(tagsOf(page), harmless) << hostile;
        EXPECT_FALSE(Holds(page, "onerror=alert(1)>")) << hostile;
    }
}

}  // namespace
