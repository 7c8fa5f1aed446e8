// The log page as it is served: it shows the file that the server logs to.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/temp_folder.hpp"
#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

bool Holds(Reply const& reply, std::string const& text) {
    return reply.body.find(text) != std::string::npos;
}

TEST(ServedLog, ShowsWhatTheServerLogs) {
    TempFolder const folder;
    std::string const log = folder.path + "/log";
    Server server({"--log-file", log, "--slow-page", "0", "--workers", "1"});
    EXPECT_TRUE(Holds(Get(server.Port(), "/log"), "no such entry"));
    EXPECT_TRUE(Holds(Get(server.Port(), "/log"), "page 'log' took "));
    EXPECT_TRUE(Holds(Get(server.Port(), "/log?level=error"), "no such entry"));
    EXPECT_TRUE(Holds(Get(server.Port(), "/log?level=warning&text=PAGE+"), " took "));
    EXPECT_TRUE(Holds(Get(server.Port(), "/log?text=nothing+of+the+kind"), "no such entry"));
}

TEST(ServedLog, IsThatOfTheNewFileWhenItIsOpenedAnew) {
    TempFolder const folder;
    std::string const log = folder.path + "/log";
    Server server({"--log-file", log, "--workers", "1"});
    std::ofstream(log, std::ios::app) << "the old file\n";
    EXPECT_TRUE(Holds(Get(server.Port(), "/log"), "the old file"));
    std::filesystem::rename(log, log + ".1");
    EXPECT_TRUE(Holds(Get(server.Port(), "/log"), "the old file"));
    server.Process().Signal(SIGHUP);
    while (!std::filesystem::exists(log)) {
    }
    std::ofstream(log, std::ios::app) << "the new file\n";
    // The supervisor opens it first, and then tells the worker.
    Reply reply;
    do {
        reply = Get(server.Port(), "/log");
    } while (Holds(reply, "the old file"));
    EXPECT_TRUE(Holds(reply, "the new file"));
}

TEST(ServedLog, SaysWhatToDoWithoutAFile) {
    Server server;
    EXPECT_TRUE(Holds(Get(server.Port(), "/log"), "--log-file"));
}

TEST(ServedStatus, GivesTheValuesAlone) {
    Server server;
    Reply const page = Get(server.Port(), "/status", "Accept-Language: de\r\n");
    std::string const mark = "data-source=\"";
    std::size_t const at = page.body.find(mark) + mark.size();
    std::string path = page.body.substr(at, page.body.find('"', at) - at);
    path.replace(path.find("&amp;"), 5, "&");
    Reply const values = Get(server.Port(), path);
    EXPECT_EQ(values.status, 200);
    EXPECT_EQ(values.body.compare(0, 5, "<div "), 0);
    EXPECT_TRUE(Holds(values, "<h3>Ger\u00e4t</h3>"));
    EXPECT_EQ(values.Header("Cache-Control"), "no-store");
    Reply const script = Get(server.Port(), "/live.js");
    EXPECT_EQ(script.Header("Content-Type"), "text/javascript; charset=utf-8");
    EXPECT_NE(page.Header("Content-Security-Policy").find("; script-src 'self'; "),
              std::string::npos);
    EXPECT_NE(page.Header("Content-Security-Policy").find("; connect-src 'self'; "),
              std::string::npos);
}

}  // namespace
