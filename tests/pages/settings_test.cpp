// The settings page: what it stores, and what it says of what it could not store.
#include "sample_page_test.hpp"

using namespace Quillo;
using QuilloServer::Request;

namespace {

class SettingsTest : public SamplePageTest {
protected:
    SettingsTest() { Platform().settings["show_interfaces"] = 0; }

    Request Posted(UriArgs const& form) {
        Request request = Asked();
        request.method = "POST";
        request.form = form;
        request.token = "a<b";
        return request;
    }

    // What the store was asked to change.
    static std::string Stored() {
        std::string lines;
        for (std::string const& line : Platform().trace) {
            if (line.compare(0, 16, "Cfg_SetAttrValue") == 0 ||
                line.compare(0, 12, "ConfigUpdate") == 0) {
                lines += line + "\n";
            }
        }
        return lines;
    }
};

bool Holds(std::string const& page, std::string const& text) {
    return page.find(text) != std::string::npos;
}

std::size_t Count(std::string const& page, std::string const& text) {
    return (Replaced(page, text, text + "x").size() - page.size());
}

// The tag of the box `name`.
std::string Box(std::string const& page, std::string const& name) {
    std::size_t const id = page.find(" id=\"" + name + "\" ");
    std::size_t const begin = page.rfind('<', id);
    return id == std::string::npos ? "" : page.substr(begin, page.find('>', id) - begin);
}

TEST_F(SettingsTest, ABoxIsCheckedAsTheSettingIs) {
    std::string const page = Written("settings");
    EXPECT_TRUE(Holds(Box(page, "show_memory"), " checked=\"\""));
    EXPECT_FALSE(Holds(Box(page, "show_interfaces"), " checked"));
    EXPECT_TRUE(Holds(Box(page, "show_interfaces"), " value=\"on\""));
    EXPECT_EQ(Stored(), "");
}

TEST_F(SettingsTest, TheFormCarriesTheToken) {
    Request request = Asked();
    request.token = "a<b";
    std::string const page = Written("settings", request);
    EXPECT_TRUE(Holds(page, "<input name=\"token\" type=\"hidden\" value=\"a&lt;b\" >"));
    EXPECT_TRUE(Holds(page, "<form action=\"/settings\" class=\"card\" method=\"post\" "));
}

TEST_F(SettingsTest, WhatWasSentHoldsUntilTheDeviceStartsAnewAndThePageIsAskedForAgain) {
    Request request = Posted({{"show_interfaces", "on"}});
    EXPECT_EQ(Written("settings", request), "");
    EXPECT_EQ(Stored(),
              "Cfg_SetAttrValue show_memory FALSE\n"
              "Cfg_SetAttrValue show_interfaces TRUE\n"
              "Cfg_SetAttrValue show_storage FALSE\n");
    EXPECT_EQ(request.redirect, "/settings?stored=yes");
}

TEST_F(SettingsTest, WhatIsToLastIsStoredToLast) {
    Request request = Posted({{"show_memory", "on"}, {"lasting", "on"}});
    Written("settings", request);
    EXPECT_EQ(Stored(),
              "ConfigUpdate show_memory=TRUE\n"
              "ConfigUpdate show_interfaces=FALSE\n"
              "ConfigUpdate show_storage=FALSE\n");
}

TEST_F(SettingsTest, ThePageSaysThatTheSettingsWereStored) {
    std::string const done = "The settings were stored.";
    EXPECT_TRUE(Holds(Written("settings", "stored=yes"), done));
    EXPECT_FALSE(Holds(Written("settings"), done));
}

TEST_F(SettingsTest, NothingIsStoredWhenAFieldIsWrongAndTheFirstWrongOneGetsTheFocus) {
    Request request =
        Posted({{"show_memory", "on"}, {"show_interfaces", "maybe"}, {"show_storage", ""}});
    std::string const page = Written("settings", request);
    EXPECT_EQ(Stored(), "");
    EXPECT_EQ(request.status, 400);
    EXPECT_EQ(request.redirect, "");
    EXPECT_TRUE(Holds(page, "document.settings.show_interfaces.focus();"));
    EXPECT_EQ(Count(page, ".focus();"), 1U);
    EXPECT_EQ(Platform().Trace().find("src/elements/"), std::string::npos) << "bad focus reported";
    EXPECT_FALSE(Holds(Box(page, "show_memory"), "aria-invalid"));
    EXPECT_TRUE(Holds(Box(page, "show_memory"), " checked"));
    EXPECT_TRUE(Holds(Box(page, "show_interfaces"), " aria-invalid=\"true\""));
    EXPECT_TRUE(Holds(Box(page, "show_storage"), " aria-describedby=\"show_storage_fault\""));
    EXPECT_TRUE(Holds(page, "id=\"show_storage_fault\""));
    EXPECT_EQ(Count(page, "A box is checked or not: nothing else was expected."), 2U);
}

TEST_F(SettingsTest, ASettingThatCannotBeStoredIsNamedAndKeepsWhatWasSent) {
    Platform().setResult = -1;
    Request request = Posted({{"show_interfaces", "on"}});
    std::string const page = Written("settings", request);
    EXPECT_EQ(request.status, 400);
    EXPECT_EQ(request.redirect, "");
    EXPECT_TRUE(Holds(Box(page, "show_interfaces"), " checked"));
    EXPECT_FALSE(Holds(Box(page, "show_memory"), " checked"));
    EXPECT_TRUE(Holds(page, "document.settings.show_memory.focus();"));
    EXPECT_EQ(Count(page, "This setting could not be stored."), 3U);
    EXPECT_TRUE(Holds(page, "Not all settings were stored."));
}

TEST_F(SettingsTest, WhatWasToLastStaysCheckedWhenItCouldNotBeStored) {
    Platform().updateResult = 1;
    Request request = Posted({{"lasting", "on"}});
    EXPECT_TRUE(Holds(Box(Written("settings", request), "lasting"), " checked"));
}

TEST_F(SettingsTest, ASettingThatTheStoreDoesNotKnowIsShownSoAndLeftAlone) {
    Platform().settings.erase("show_memory");
    std::string const page = Written("settings");
    EXPECT_TRUE(Holds(Box(page, "show_memory"), " disabled=\"\""));
    EXPECT_TRUE(Holds(Box(page, "show_memory"), " aria-invalid=\"false\""));
    EXPECT_FALSE(Holds(Box(page, "show_storage"), " disabled"));
    EXPECT_EQ(Count(page, "The device does not know this setting."), 1U);
    EXPECT_FALSE(Holds(page, ".focus();"));
    Request request = Posted({{"show_memory", "on"}});
    Written("settings", request);
    EXPECT_EQ(request.redirect, "/settings?stored=yes");
    EXPECT_FALSE(Holds(Stored(), "show_memory"));
}

TEST_F(SettingsTest, WithAStoreThatKnowsNoSettingNothingIsSaidToBeStored) {
    Platform().settings.clear();
    Request request = Posted({{"theme", "dark"}});
    std::string const page = Written("settings", request);
    EXPECT_EQ(request.redirect, "");
    EXPECT_EQ(Count(page, "Not all settings were stored."), 1U);
    EXPECT_EQ(Count(page, "The device does not know this setting."), 3U);
}

TEST_F(SettingsTest, TheThemeThatTheReaderHasChosenIsSelected) {
    struct Row {
        char const* cookie;
        char const* option;
    };
    for (Row const& row : {Row{"", "<option value=\"\" selected=\"\">Automatic</option>"},
                           Row{"light", "<option value=\"light\" selected=\"\">Light</option>"},
                           Row{"dark", "<option value=\"dark\" selected=\"\">Dark</option>"},
                           Row{"blue", "<option value=\"\" selected=\"\">Automatic</option>"}}) {
        Request request = Asked();
        request.cookies["THEME"] = row.cookie;
        std::string const page = Written("settings", request);
        EXPECT_TRUE(Holds(page, row.option)) << row.cookie;
        EXPECT_EQ(Count(page, "selected=\"\""), 1U);
    }
}

TEST_F(SettingsTest, AnotherThemeIsKeptByTheBrowser) {
    struct Row {
        UriArgs cookies;
        UriArgs form;
        UriArgs newCookies;
    };
    for (Row const& row :
         {Row{{}, {{"theme", "dark"}}, {{"THEME", "dark"}}}, Row{{}, {{"theme", ""}}, {}},
          Row{{{"THEME", "dark"}}, {{"theme", "dark"}}, {}},
          Row{{{"THEME", "dark"}}, {{"theme", ""}}, {{"THEME", ""}}},
          Row{{{"THEME", "dark"}}, {}, {}}}) {
        Request request = Posted(row.form);
        request.cookies = row.cookies;
        EXPECT_EQ(Written("settings", request), "");
        EXPECT_EQ(request.newCookies, row.newCookies);
        EXPECT_EQ(request.redirect, "/settings?stored=yes");
    }
}

TEST_F(SettingsTest, AThemeThatThereIsNotIsSaidAndNothingIsStored) {
    Request request = Posted({{"theme", "blue"}});
    std::string const page = Written("settings", request);
    EXPECT_EQ(Stored(), "");
    EXPECT_EQ(request.status, 400);
    EXPECT_TRUE(request.newCookies.empty());
    EXPECT_TRUE(Holds(page, "document.settings.theme.focus();"));
    EXPECT_TRUE(Holds(page, "<select aria-describedby=\"theme_fault\" aria-invalid=\"true\""));
    EXPECT_TRUE(Holds(page, "There are no such colours."));
    Request both = Posted({{"theme", "blue"}, {"show_storage", "maybe"}});
    std::string const second = Written("settings", both);
    EXPECT_TRUE(Holds(second, "document.settings.show_storage.focus();"));
    EXPECT_EQ(Count(second, ".focus();"), 1U);
}

TEST_F(SettingsTest, NoThemeIsKeptWhenASettingCannotBeStored) {
    Platform().setResult = -1;
    Request request = Posted({{"theme", "dark"}});
    EXPECT_TRUE(Holds(Written("settings", request), "<option value=\"dark\" selected=\"\">"));
    EXPECT_TRUE(request.newCookies.empty());
}

TEST_F(SettingsTest, EverySettingOfThePageIsDeclaredAndHoldsUntilOneIsStored) {
    std::vector<std::string> declared;
    for (QuilloServer::Setting const* setting : QuilloServer::Settings()) {
        declared.push_back(setting->name + "=" + setting->defaultValue);
    }
    EXPECT_EQ(declared, (std::vector<std::string>{"show_memory=TRUE", "show_interfaces=TRUE",
                                                  "show_storage=TRUE"}));
}

TEST_F(SettingsTest, TheStatusPageShowsThePartsThatAreOnOrNotKnown) {
    struct Row {
        char const* setting;
        char const* heading;
    };
    for (Row const& row :
         {Row{"show_memory", "Memory"}, Row{"show_interfaces", "Network interfaces"},
          Row{"show_storage", "Storage"}}) {
        std::string const heading = std::string("<h3>") + row.heading + "</h3>";
        Platform().settings[row.setting] = 0;
        EXPECT_FALSE(Holds(Written("status"), heading)) << row.setting;
        Platform().settings[row.setting] = 1;
        EXPECT_TRUE(Holds(Written("status"), heading)) << row.setting;
        Platform().settings.erase(row.setting);
        EXPECT_TRUE(Holds(Written("status"), heading)) << row.setting;
    }
}

}  // namespace
