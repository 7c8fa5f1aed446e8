// The sample pages over a device whose data is fixed.
#include <page.hpp>

#include <cstdio>
#include <sstream>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

class SamplePageTest : public PageTest {
protected:
    SamplePageTest() : app() {
        app.out = std::tmpfile();
        Platform().languageAnswer = "en-us";
        // Phrases are shown as they are asked for.
        Platform().onTranslate = [](std::string const& phrase) { return phrase; };
        Platform().objects["host"] = {
            {"hostname", "kernel", "architecture", "uptime", "load1", "load5", "load15",
             "processes"},
            {{"<gate>", "6.1", "ppc", "93784", "0.10", "0.20", "0.30", "42"}}};
        Platform().objects["memory"] = {{"total", "available", "swap_total", "swap_free"},
                                        {{"1536", "1024", "0", "0"}}};
        Platform().objects["interfaces"] = {
            {"name", "state", "mac", "ipv4", "ipv6", "rx_bytes", "tx_bytes", "mtu"},
            {{"lo", "unknown", "", "127.0.0.1/8", "::1/128", "10", "10", "65536"},
             {"eth0", "up", "02:00:00:00:00:01", "192.0.2.7/24", "", "2048", "4096", "1500"}}};
        Platform().objects["storage"] = {
            {"mount", "device", "type", "size", "used", "available"},
            {{"/", "/dev/vda", "ext4", "1073741824", "536870912", "268435456"}}};
        Platform().objects["processes"] = {
            {"pid", "name", "state", "rss_bytes", "threads"},
            {{"7", "a&b", "S", "4096", "3"}, {"1", "init", "S", "1024", "1"}}};
    }

    ~SamplePageTest() override { std::fclose(app.out); }

    std::string Written(std::string const& name, char const* arguments = nullptr) {
        app.uriArgs = arguments;
        QuilloServer::Request request = {app, GetUriArgs(app, UriArgs())};
        std::ostringstream out;
        QuilloServer::FindPage(name)->write(request, out);
        return out.str();
    }

    ZOV_AppData app;
};

using SamplePageGoldenTest = SamplePageTest;

TEST_F(SamplePageGoldenTest, Status) {
    ExpectGolden(Written("status"), "page_status.html");
}

TEST_F(SamplePageGoldenTest, Network) {
    ExpectGolden(Written("network"), "page_network.html");
}

TEST_F(SamplePageGoldenTest, NetworkInArabicWithTheSecondTabCurrent) {
    Platform().languageAnswer = "ar-eg";
    ExpectGolden(Written("network", "view=traffic"), "page_network_ar.html");
}

TEST_F(SamplePageGoldenTest, Processes) {
    ExpectGolden(Written("processes"), "page_processes.html");
}

TEST_F(SamplePageTest, PagesStandInTheNavigationBarByTheirOrder) {
    std::vector<std::string> names;
    for (QuilloServer::Page const* page : QuilloServer::Pages()) {
        names.push_back(page->name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"status", "network", "processes"}));
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
    Platform().languageAnswer = "ar-eg";
    EXPECT_NE(Written("status").find("<html dir=\"rtl\" lang=\"ar\">"), std::string::npos);
}

TEST_F(SamplePageTest, WhatWasReportedIsShownInDebugModeOnly) {
    EXPECT_EQ(Written("status").find("class=\"debug\""), std::string::npos);
    isDebugInit = true;
    isDebug = true;
    std::string const page = Written("status");
    EXPECT_NE(page.find("class=\"debug\""), std::string::npos);
    EXPECT_NE(page.find("LANGUAGE = en"), std::string::npos);
}

}  // namespace
