// Texts that nobody of this project wrote, and many of them meant to break out of a page, on every
// way into the sample pages: a browser makes of each page what it makes of it with harmless texts.
#include <config_store.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <host/host.hpp>
#include <map>
#include <quillo>
#include <set>
#include <string>
#include <vector>

#include "platform/temp_folder.hpp"
#include "server/http_client.hpp"
#include "server/page_structure.hpp"
#include "server/server_process.hpp"
#include "support/external_texts.hpp"

namespace {

char const* const pageNames[] = {"status",   "network",  "processes", "storage", "log",
                                 "settings", "language", "about",     "widgets"};
// More entries than a page shows, every other one in another form than the log's.
std::string Log() {
    std::string entries;
    for (int i = 0; i < 60; ++i) {
        entries += "2026-01-02T03:04:05.678+01:00 [1] info a.cpp:1: harmless\nfree text\n";
    }
    return entries;
}

// A byte that is no text ends the header, and with it the request.
std::string InOneLine(std::string text) {
    text.erase(std::remove_if(text.begin(), text.end(),
                              [](char byte) { return byte == '\r' || byte == '\n' || byte == 0; }),
               text.end());
    return text;
}

// As it may stand in a request line: escaped where it has to be, and nowhere else.
std::string InTarget(std::string const& text) {
    std::string target;
    for (char const byte : text) {
        bool const isVisible = byte > ' ' && byte < '\x7f';
        target += isVisible ? std::string(1, byte) : Quillo::PcntEncode(std::string(1, byte));
    }
    return target;
}

class HostileTexts : public testing::Test {
protected:
    void SetUp() override {
        texts_ = ExternalTexts("xss", ".txt");
        std::vector<std::string> const naughty = ExternalTexts("naughty-strings", ".json");
        texts_.insert(texts_.end(), naughty.begin(), naughty.end());
        if (texts_.empty()) {
            GTEST_SKIP() << "there is no test data in " QUILLO_TEST_DATA
                            "; the option QUILLO_TEST_DATA names its folder";
        }
    }

    std::vector<std::string> Options(std::string const& level = "error") const {
        std::ofstream(folder_.path + "/log") << Log();
        return {"--log-file", folder_.path + "/log", "--log-level", level};
    }

    std::string LogFile() const { return folder_.path + "/log"; }
    std::vector<std::string> const& Texts() const { return texts_; }

    // What pages may look like: learned from harmless requests.
    void Learn(Reply const& reply) { structures_.insert(StructureWithoutRows(reply.body, rows_)); }

    // Whether the page is one of those that were learned.
    testing::AssertionResult IsKnown(Reply const& reply) const {
        std::set<std::string> rows;
        std::string const structure = StructureWithoutRows(reply.body, rows);
        if (structures_.count(structure) == 0) {
            return testing::AssertionFailure() << "another page: " << structure;
        }
        for (std::string const& row : rows) {
            if (rows_.count(row) == 0) {
                return testing::AssertionFailure() << "another row: " << row;
            }
        }
        return testing::AssertionSuccess();
    }

private:
    TempFolder folder_;
    std::vector<std::string> texts_;
    std::set<std::string> structures_;
    std::set<std::string> rows_;
};

TEST_F(HostileTexts, InArgumentsAreText) {
    Server server(Options());
    auto const target = [](std::size_t page, std::string const& text) {
        return std::string("/") + pageNames[page] + "?text=" + text + "&level=" + text +
               "&before=" + text + "&view=" + text + "&LANGUAGE=" + text + "&part=" + text +
               "&stored=" + text + "&" + text;
    };
    std::size_t const count = std::size(pageNames);
    for (std::size_t page = 0; page < count; ++page) {
        for (char const* language : {"en", "de", "ar"}) {
            std::string const chosen = "&LANGUAGE=" + std::string(language);
            for (char const* text : {"zzz", ""}) {
                Learn(Get(server.Port(), target(page, text) + chosen));
            }
            for (char const* before : {"0", "70", "999999999"}) {
                for (char const* text : {"&text=zzz", "&text="}) {
                    Learn(Get(server.Port(), "/log?before=" + std::string(before) + text + chosen));
                }
            }
        }
    }
    Learn(Get(server.Port(), "/nothing"));
    std::size_t served = 0;
    for (std::size_t i = 0; i < Texts().size(); ++i) {
        std::string const& text = Texts()[i];
        std::string const escaped = Quillo::PcntEncode(text);
        Reply const searched = Get(server.Port(), "/log?text=" + escaped + "&before=999999999");
        EXPECT_TRUE(IsKnown(searched)) << text;
        Reply const reply = Get(server.Port(), target(i % count, InTarget(text)));
        EXPECT_TRUE(IsKnown(reply)) << pageNames[i % count] << ": " << text;
        served += searched.status == 200 && reply.status == 200 ? 1U : 0U;
    }
    // The others are too long.
    EXPECT_GT(served, Texts().size() * 9 / 10);
}

TEST_F(HostileTexts, InHeadersAreText) {
    Server server(Options());
    auto const request = [](std::size_t page, std::string const& host, std::string const& text) {
        return "GET /" + std::string(pageNames[page]) + " HTTP/1.1\r\nHost: " + host +
               "\r\nAccept-Language: " + text + "\r\nCookie: LANGUAGE=" + text + "; THEME=" + text +
               "; quillo_session=" + text + "; " + text + "\r\nUser-Agent: " + text +
               "\r\nReferer: " + text + "\r\nIf-None-Match: " + text + "\r\nOrigin: " + text +
               "\r\n\r\n";
    };
    std::size_t const count = std::size(pageNames);
    Learn(Get(server.Port(), "/nothing"));
    for (std::size_t page = 0; page < count; ++page) {
        for (char const* language : {"en", "de", "ar"}) {
            Learn(Ask(server.Port(), request(page, "localhost", language)));
        }
    }
    std::size_t served = 0;
    for (std::size_t i = 0; i < Texts().size(); ++i) {
        std::string const text = InOneLine(Texts()[i]);
        Reply const reply = Ask(server.Port(), request(i % count, "localhost", text));
        EXPECT_TRUE(IsKnown(reply)) << pageNames[i % count] << ": " << text;
        served += reply.status == 200 ? 1U : 0U;
        Reply const misled = Ask(server.Port(), request(i % count, text, text));
        EXPECT_GE(misled.status, 400) << text;
        EXPECT_TRUE(IsKnown(misled)) << text;
    }
    // The others hold bytes that a header may not have.
    EXPECT_GT(served, Texts().size() * 9 / 10);
}

TEST_F(HostileTexts, InFormsAreText) {
    Server server(Options());
    Reply const opened = Get(server.Port(), "/settings");
    std::string const kept = opened.Header("Set-Cookie");
    std::string const mark = "name=\"token\" type=\"hidden\" value=\"";
    std::string const token = opened.body.substr(opened.body.find(mark) + mark.size(), 64);
    std::string const fields = "Cookie: " + kept.substr(0, kept.find(';')) +
                               "\r\nOrigin: http://localhost\r\nAccept-Language: en\r\n";
    auto const post = [&](std::string const& text) {
        std::string const field = Quillo::PcntEncode(text);
        return Ask(server.Port(),
                   FormText("/settings",
                            "show_memory=" + field + "&show_storage=" + field + "&" + field + "=" +
                                field + "&lasting=" + field + "&theme=" + field + "&token=" + token,
                            fields));
    };
    Reply const harmless = post("harmless");
    EXPECT_EQ(harmless.status, 400);
    Learn(harmless);
    // The form of a text that the server sees as empty: a theme there is.
    Learn(post(""));
    for (std::string const& text : Texts()) {
        Reply const reply = post(text);
        EXPECT_EQ(reply.status, 400) << text;
        EXPECT_TRUE(IsKnown(reply)) << text;
    }
}

TEST_F(HostileTexts, InSettingsAreText) {
    Server server(Options());
    QuilloHost::SetStateFolder(server.Folder() + "/state");
    QuilloHost::SetLogThreshold(QuilloHost::LogLevel::Error);
    ASSERT_TRUE(QuilloHost::DeclareSetting("show_memory", "TRUE"));
    auto const store = [](std::string const& value) {
        return Cfg_SetAttrValue("show_memory", value.c_str()) == 0;
    };
    for (char const* value : {"TRUE", "FALSE", "harmless"}) {
        ASSERT_TRUE(store(value));
        Learn(Get(server.Port(), "/settings"));
        Learn(Get(server.Port(), "/status"));
    }
    // Each is written to the disk, so not all of them are.
    std::size_t const step = 10;
    std::size_t stored = 0;
    for (std::size_t i = 0; i < Texts().size(); i += step) {
        // A value is one line of at most 256 bytes.
        if (store(InOneLine(Texts()[i]).substr(0, 256))) {
            ++stored;
            EXPECT_TRUE(IsKnown(Get(server.Port(), "/settings"))) << Texts()[i];
            EXPECT_TRUE(IsKnown(Get(server.Port(), "/status"))) << Texts()[i];
        }
    }
    EXPECT_GT(stored, Texts().size() / step * 9 / 10);
}

// Where the page links to older entries; empty when there are none.
std::string OlderEntries(Reply const& reply) {
    std::string const mark = "&amp;before=";
    std::size_t const at = reply.body.find(mark);
    if (at == std::string::npos) {
        return "";
    }
    std::size_t const begin = at + mark.size();
    return "/log?before=" + reply.body.substr(begin, reply.body.find('"', begin) - begin);
}

TEST_F(HostileTexts, InTheLogAreText) {
    Server server(Options("info"));
    // With a link to older entries, to newer ones, and both.
    for (char const* path : {"/log", "/log?before=4000", "/log?before=9"}) {
        Learn(Get(server.Port(), path));
    }
    // What is logged of requests, and what others write into the file.
    std::ofstream file(LogFile(), std::ios::app);
    for (std::string const& text : Texts()) {
        file << InOneLine(text) << "\n" << std::flush;
        Get(server.Port(), "/about?" + InTarget(text).substr(0, 8000),
            "Accept-Language: " + InOneLine(text) + "\r\n");
    }
    std::size_t pages = 0;
    for (std::string path = "/log"; !path.empty(); ++pages) {
        Reply const reply = Get(server.Port(), path);
        EXPECT_TRUE(IsKnown(reply)) << path;
        path = OlderEntries(reply);
    }
    EXPECT_GT(pages, 2 * Texts().size() / 50);
}

}  // namespace
