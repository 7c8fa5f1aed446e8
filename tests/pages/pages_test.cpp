// What the sample pages have in common, and what each of them decides.
#include <gtest/gtest.h>

#include "sample_page_test.hpp"

using namespace Quillo;

namespace {

bool Holds(std::string const& page, std::string const& text) {
    return page.find(text) != std::string::npos;
}

TEST_F(SamplePageTest, PagesStandInTheNavigationBarByTheirOrder) {
    std::vector<std::string> names;
    for (QuilloServer::Page const* page : QuilloServer::Pages()) {
        names.push_back(page->name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"status", "network", "processes", "storage", "log",
                                               "settings", "language", "about", "widgets"}));
}

TEST_F(SamplePageTest, TheNetworkPageShowsTheViewAskedForAndTheFirstForAnyOther) {
    struct Row {
        char const* arguments;
        char const* shown;
    };
    for (Row const& row :
         {Row{nullptr, "IPv4"}, Row{"view=addresses", "IPv4"}, Row{"view=traffic", "Received"},
          Row{"view=hardware", "MTU"}, Row{"view=Traffic", "IPv4"}, Row{"view=", "IPv4"}}) {
        std::string const page = Written("network", row.arguments);
        EXPECT_NE(page.find(std::string(">") + row.shown + "</th>"), std::string::npos)
            << Cstr(row.arguments);
    }
}

TEST_F(SamplePageTest, APageLinksTheStyleSheetThatIsServed) {
    std::vector<std::string> sheets;
    for (QuilloServer::StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->type == "text/css; charset=utf-8") {
            sheets.push_back(file->path);
        }
    }
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_NE(Written("status").find("<link href=\"" + sheets[0] + "\" rel=\"stylesheet\" >"),
              std::string::npos);
}

TEST_F(SamplePageTest, APageThatStandsAloneHoldsTheStyleSheet) {
    QuilloServer::Request request = {app, {}};
    request.standsAlone = true;
    std::string const page = Written("status", request);
    EXPECT_EQ(page.find("<link"), std::string::npos);
    EXPECT_NE(page.find("<style>\n"), std::string::npos);
    EXPECT_NE(page.find("prefers-color-scheme"), std::string::npos);
}

TEST_F(SamplePageTest, TheScriptOfTheStatusPageIsServed) {
    std::vector<std::string> scripts;
    for (QuilloServer::StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->type == "text/javascript; charset=utf-8") {
            scripts.push_back(file->path);
            EXPECT_TRUE(Holds(std::string(file->bytes), "visibilitychange"));
        }
    }
    ASSERT_EQ(scripts.size(), 1U);
    EXPECT_TRUE(
        Holds(Written("status"), "<script src=\"" + scripts[0] + "\" defer=\"\"></script>"));
}

TEST_F(SamplePageTest, AStatusPageThatStandsAloneAsksForNothing) {
    QuilloServer::Request request = {app, {}};
    request.standsAlone = true;
    std::string const page = Written("status", request);
    EXPECT_FALSE(Holds(page, "<script"));
    EXPECT_FALSE(Holds(page, ">Refresh</a>"));
    EXPECT_TRUE(Holds(Written("status"), "<a href=\"/status\" id=\"refresh\">Refresh</a>"));
}

TEST_F(SamplePageTest, TheValuesAreAskedForInTheLanguageOfThePage) {
    Speak("ar-eg");
    EXPECT_TRUE(Holds(Written("status"), "data-source=\"/status?part=values&amp;LANGUAGE=ar\""));
}

TEST_F(SamplePageTest, TheValuesAloneAreForThatArgumentAlone) {
    for (char const* arguments : {"part=values", "x=1&part=values"}) {
        EXPECT_EQ(Written("status", arguments).compare(0, 5, "<div "), 0) << arguments;
    }
    for (char const* arguments : {"part=", "part=value", "parts=values"}) {
        EXPECT_EQ(Written("status", arguments).compare(0, 9, "<!DOCTYPE"), 0) << arguments;
    }
}

TEST_F(SamplePageTest, ThereIsNoPageOfAnotherName) {
    EXPECT_EQ(QuilloServer::FindPage("Status"), nullptr);
    EXPECT_EQ(QuilloServer::FindPage(""), nullptr);
}

TEST_F(SamplePageTest, AnObjectThatCannotBeHadIsSaidToBeMissingAndTheOthersAreShown) {
    Platform().objects.erase("storage");
    std::string const page = Written("status");
    EXPECT_NE(page.find("Nothing to show. The device log says why."), std::string::npos);
    EXPECT_NE(page.find("192.0.2.7/24"), std::string::npos);
}

TEST_F(SamplePageTest, ArabicIsWrittenFromRightToLeft) {
    Speak("ar-eg");
    EXPECT_NE(Written("status").find("<html dir=\"rtl\" lang=\"ar\">"), std::string::npos);
}

TEST_F(SamplePageTest, ThePageIsInTheThemeThatTheReaderHasChosen) {
    struct Row {
        UriArgs cookies;
        char const* html;
    };
    for (Row const& row :
         {Row{{}, "<html dir=\"ltr\" lang=\"en\">"},
          Row{{{"THEME", ""}}, "<html dir=\"ltr\" lang=\"en\">"},
          Row{{{"THEME", "blue"}}, "<html dir=\"ltr\" lang=\"en\">"},
          Row{{{"THEME", "light"}}, "<html data-theme=\"light\" dir=\"ltr\" lang=\"en\">"},
          Row{{{"THEME", "dark"}}, "<html data-theme=\"dark\" dir=\"ltr\" lang=\"en\">"}}) {
        QuilloServer::Request request = Asked();
        request.cookies = row.cookies;
        EXPECT_TRUE(Holds(Written("about", request), row.html)) << row.html;
    }
}

TEST_F(SamplePageTest, WhatWasReportedIsShownInDebugModeOnly) {
    EXPECT_EQ(Written("status").find("class=\"debug\""), std::string::npos);
    isDebugInit = true;
    isDebug = true;
    std::string const page = Written("status");
    EXPECT_NE(page.find("class=\"debug\""), std::string::npos);
    EXPECT_NE(page.find("LANGUAGE = en"), std::string::npos);
}

TEST_F(SamplePageTest, FileSystemsStandByTheirPlacesWithAMeterWhereFiguresAreKnown) {
    std::string const page = Written("storage");
    std::size_t const root = page.find("<bdi>/</bdi>");
    std::size_t const away = page.find("<bdi>/mnt/away</bdi>");
    std::size_t const var = page.find("<bdi>/var</bdi>");
    EXPECT_LT(root, away);
    EXPECT_LT(away, var);
    EXPECT_TRUE(Holds(page.substr(root, away - root), " value=\"67\""));
    EXPECT_FALSE(Holds(page.substr(away, var - away), "<meter"));
    EXPECT_TRUE(Holds(page.substr(away, var - away), "Not known"));
    EXPECT_TRUE(Holds(page.substr(var), ">94 % · 953.6 MiB<"));
}

TEST_F(SamplePageTest, AProcessIsInTheStateThatItsLetterStandsForOrInNoneThatIsKnown) {
    std::string const page = Written("processes");
    EXPECT_TRUE(Holds(page, "title=\"S\">Sleeping</bdi>"));
    EXPECT_TRUE(Holds(page, "title=\"R\">Running</bdi>"));
    EXPECT_TRUE(Holds(page, "title=\"?\">Not known</bdi>"));
}

TEST_F(SamplePageTest, TheLanguageOfThePageIsTheCurrentOneOfTheList) {
    struct Row {
        char const* catalog;
        char const* code;
    };
    for (Row const& row : {Row{"en-us", "en"}, Row{"de-de", "de"}, Row{"ar-eg", "ar"}}) {
        Speak(row.catalog);
        std::string const page = Written("language");
        std::string const code = row.code;
        EXPECT_TRUE(Holds(page, "<a aria-current=\"true\" href=\"/language?LANGUAGE=" + code +
                                    "\" hreflang=\"" + code + "\" lang=\"" + code + "\">"))
            << page;
        EXPECT_EQ(Replaced(page, "aria-current=\"true\"", "").size() +
                      std::string("aria-current=\"true\"").size(),
                  page.size());
    }
}

TEST_F(SamplePageTest, TheLanguageAskedForIsKeptAndNothingElseIs) {
    struct Row {
        char const* arguments;
        UriArgs cookies;
    };
    for (Row const& row :
         {Row{nullptr, {}}, Row{"", {}}, Row{"LANGUAGE=de", {{"LANGUAGE", "de"}}},
          Row{"LANGUAGE=ar&x=1", {{"LANGUAGE", "ar"}}},
          Row{"LANGUAGE=ar&LANGUAGE=en", {{"LANGUAGE", "en"}}}, Row{"LANGUAGE=fr", {}},
          Row{"LANGUAGE=", {}}, Row{"XLANGUAGE=de", {}}, Row{"LANGUAGE=de%0d%0a", {}}}) {
        QuilloServer::Request request = Asked(row.arguments);
        Written("language", request);
        EXPECT_EQ(request.newCookies, row.cookies) << Cstr(row.arguments);
    }
}

}  // namespace
