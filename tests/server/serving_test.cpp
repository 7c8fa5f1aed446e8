// What is answered to requests that are as they should be.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

std::string const policy =
    "default-src 'none'; connect-src 'self'; img-src 'self'; script-src 'self'; style-src 'self'; style-src-attr "
    "'unsafe-inline'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'";

// What changes from answer to answer, replaced by its name.
std::string Masked(std::string const& text) {
    std::string masked = text;
    for (
        auto const& [pattern, name] :
        {std::pair("Date: [A-Z][a-z]{2}, [0-9]{2} [A-Z][a-z]{2} [0-9]{4} [0-9:]{8} GMT", "DATE"),
         std::pair(
             "build;dur=[0-9]+\\.[0-9]{3}, query;dur=[0-9]+\\.[0-9]{3}, render;dur=[0-9]+\\.[0-9]{3}",
             "TIMING"),
         std::pair("quillo_session=[0-9a-f]{32}\\.[0-9a-f]{64}", "SESSION")}) {
        masked = std::regex_replace(masked, std::regex(pattern), name);
    }
    return masked;
}

TEST(Serving, PageIsSentWithItsLength) {
    Server server;
    EXPECT_EQ(Masked(Get(server.Port(), "/much?bytes=5").text),
              "HTTP/1.1 200 OK\r\n"
              "DATE\r\n"
              "Connection: close\r\n"
              "Content-Type: text/html; charset=utf-8\r\n"
              "Cache-Control: no-store\r\n"
              "Server-Timing: TIMING\r\n"
              "Set-Cookie: SESSION; Path=/; HttpOnly; SameSite=Strict\r\n"
              "Content-Security-Policy: " +
                  policy +
                  "\r\n"
                  "X-Content-Type-Options: nosniff\r\n"
                  "Referrer-Policy: same-origin\r\n"
                  "Cross-Origin-Resource-Policy: same-origin\r\n"
                  "Content-Length: 5\r\n"
                  "\r\n"
                  "xxxxx");
}

TEST(Serving, HeadHasTheLengthAndNoBody) {
    Server server;
    Reply const reply = Ask(server.Port(), RequestText("/much?bytes=77", "", "HEAD"));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.Header("Content-Length"), "77");
    EXPECT_EQ(reply.body, "");
}

TEST(Serving, OldProtocolIsServed) {
    Server server;
    Reply const reply = Ask(server.Port(), "GET /much?bytes=3 HTTP/1.0\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "xxx");
}

TEST(Serving, RootLeadsToTheFirstPage) {
    Server server;
    Reply const reply = Get(server.Port(), "/");
    EXPECT_EQ(reply.status, 303);
    EXPECT_EQ(reply.Header("Location"), "/echo");
}

TEST(Serving, HealthIsPlainText) {
    Server server;
    EXPECT_EQ(Masked(Get(server.Port(), "/healthz").text),
              "HTTP/1.1 200 OK\r\n"
              "DATE\r\n"
              "Connection: close\r\n"
              "Content-Type: text/plain; charset=utf-8\r\n"
              "Cache-Control: no-store\r\n"
              "Content-Security-Policy: " +
                  policy +
                  "\r\n"
                  "X-Content-Type-Options: nosniff\r\n"
                  "Referrer-Policy: same-origin\r\n"
                  "Cross-Origin-Resource-Policy: same-origin\r\n"
                  "Content-Length: 3\r\n"
                  "\r\n"
                  "ok\n");
}

TEST(Serving, PageSeesWhatWasAskedFor) {
    Server server;
    EXPECT_EQ(Get(server.Port(), "/echo?a=%41+b&c=%3D",
                  "Cookie: x=1; y=a%20b\r\nAccept-Language: fr, de;q=0.5\r\n")
                  .body,
              "method GET\n"
              "record language de-de\n"
              "record arguments a=%41+b&c=%3D\n"
              "language de\n"
              "argument LANGUAGE=de\n"
              "argument a=A b\n"
              "argument c==\n"
              "cookie x=1\n"
              "cookie y=a b\n"
              "translated Speicher\n");
}

TEST(Serving, ArgumentsAndCookiesMayBeAsManyAsFitTheHeader) {
    Server server;
    auto const repeated = [](std::string const& text, std::size_t bytes) {
        std::string many;
        while (many.size() + text.size() <= bytes) {
            many += text;
        }
        return many;
    };
    for (char const* argument : {"&", "a&", "a=1&"}) {
        for (char const* cookie : {";", "a;", "a=;", "a=1; "}) {
            Reply const reply = Get(server.Port(), "/echo?" + repeated(argument, 8192 - 6),
                                    "Cookie: " + repeated(cookie, 8100) + "\r\n");
            EXPECT_EQ(reply.status, 200) << argument << cookie;
            EXPECT_TRUE(reply.Has("Content-Security-Policy")) << argument << cookie;
        }
    }
}

TEST(Serving, AbsoluteTargetIsServed) {
    Server server;
    Reply const reply = Get(server.Port(), "http://LOCALHOST:1/much?bytes=1");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, "x");
    EXPECT_EQ(Get(server.Port(), "http://elsewhere/much?bytes=1").status, 421);
}

struct LanguageRow {
    char const* path;
    char const* fields;
    char const* language;
};

TEST(Serving, LanguageIsTheArgumentsThenTheCookiesThenTheBrowsers) {
    Server server;
    for (LanguageRow const& row : {
             LanguageRow{"/echo?LANGUAGE=ar", "Cookie: LANGUAGE=de\r\nAccept-Language: en\r\n",
                         "ar-eg"},
             LanguageRow{"/echo", "Cookie: LANGUAGE=de\r\nAccept-Language: ar\r\n", "de-de"},
             LanguageRow{"/echo", "Accept-Language: ar\r\n", "ar-eg"},
             LanguageRow{"/echo?LANGUAGE=xx", "Cookie: LANGUAGE=yy\r\nAccept-Language: de\r\n",
                         "de-de"},
             LanguageRow{"/echo", "", "en-us"},
             LanguageRow{"/echo", "Accept-Language: xx, yy\r\n", "xx, yy"},
         }) {
        std::string const body = Get(server.Port(), row.path, row.fields).body;
        EXPECT_NE(body.find(std::string("record language ") + row.language + "\n"),
                  std::string::npos)
            << row.path << " " << row.fields << "\n"
            << body;
    }
}

TEST(Serving, LanguagesThatDoNotFitTheRecordAreCutBeforeAComma) {
    Server server;
    std::string const kept = "x1-aaaaaaaaaa, x2-aaaaaaaaaa, x3-aaaaaaaaaa, x4-aaaaaaaaaa";
    std::string const body =
        Get(server.Port(), "/echo", "Accept-Language: " + kept + ", x5-aaaaaaaaaa\r\n").body;
    EXPECT_NE(body.find("record language " + kept + "\n"), std::string::npos) << body;
}

TEST(Serving, ReportsOfOneRequestAreNotShownToTheNext) {
    Server server({"--workers", "1"});
    std::string const first = Get(server.Port(), "/reports").body;
    EXPECT_NE(first.find("LOGWARN"), std::string::npos);
    EXPECT_EQ(Get(server.Port(), "/reports").body, first);
}

TEST(Serving, PageSettlesStatusAndCookies) {
    Server server;
    Reply const reply = Get(server.Port(), "/answer");
    EXPECT_EQ(reply.status, 404);
    EXPECT_EQ(reply.body, "not here");
    EXPECT_NE(reply.head.find("\r\nSet-Cookie: LANGUAGE=de%20de; Path=/; Max-Age=31536000; "
                              "HttpOnly; SameSite=Strict\r\n"),
              std::string::npos);
    EXPECT_NE(reply.head.find("\r\nSet-Cookie: old=; Path=/; Max-Age=0; HttpOnly; "
                              "SameSite=Strict\r\n"),
              std::string::npos);
}

TEST(Serving, PageLeadsElsewhere) {
    Server server;
    Reply const reply = Get(server.Port(), "/redirect?to=/echo");
    EXPECT_EQ(reply.status, 303);
    EXPECT_EQ(reply.Header("Location"), "/echo");
    EXPECT_EQ(reply.body, "");
}

TEST(Serving, PageCannotAddHeaderFields) {
    Server server;
    Reply const reply = Get(server.Port(), "/redirect?to=/%0d%0aX-Bad:1");
    EXPECT_EQ(reply.status, 500);
    EXPECT_FALSE(reply.Has("X-Bad"));
}

TEST(Serving, FocusScriptIsAllowedByItsDigest) {
    Server server;
    Reply const reply = Get(server.Port(), "/form");
    EXPECT_NE(reply.body.find("<script type=\"text/javascript\">"
                              "document.change.volume.focus();</script>"),
              std::string::npos);
    // printf 'document.change.volume.focus();' | openssl dgst -sha256 -binary | base64
    EXPECT_NE(reply.Header("Content-Security-Policy")
                  .find("; script-src 'self' 'sha256-"
                        "FbToMSxo30MBnkje6trtQoKbSyy841FKE9MHbIXUX+8='; style-src"),
              std::string::npos)
        << reply.head;
}

TEST(Serving, FileIsSentWithItsTag) {
    Server server;
    EXPECT_EQ(Masked(Get(server.Port(), "/style.css").text),
              "HTTP/1.1 200 OK\r\n"
              "DATE\r\n"
              "Connection: close\r\n"
              "Cache-Control: public, max-age=3600\r\n"
              "ETag: \"Fi5AXkAArjwPkxEKRBi/r1\"\r\n"
              "Content-Type: text/css; charset=utf-8\r\n"
              "Content-Security-Policy: " +
                  policy +
                  "\r\n"
                  "X-Content-Type-Options: nosniff\r\n"
                  "Referrer-Policy: same-origin\r\n"
                  "Cross-Origin-Resource-Policy: same-origin\r\n"
                  "Content-Length: 16\r\n"
                  "\r\n"
                  "p { margin: 0 }\n");
}

TEST(Serving, FileIsNotSentAgain) {
    Server server;
    std::string const tag = Get(server.Port(), "/style.css").Header("ETag");
    Reply const reply = Get(server.Port(), "/style.css", "If-None-Match: " + tag + "\r\n");
    EXPECT_EQ(reply.status, 304);
    EXPECT_EQ(reply.Header("ETag"), tag);
    EXPECT_EQ(reply.body, "");
    EXPECT_EQ(Get(server.Port(), "/style.css", "If-None-Match: \"other\"\r\n").status, 200);
}

TEST(Serving, HostNamesAreTheLoopbackOnesTheAddressAndThoseAdded) {
    Server server({"--host", "Device.example", "--host", "[fd00::1]"});
    for (char const* host : {"localhost", "127.0.0.1:80", "[::1]:8080", "device.EXAMPLE",
                             "device.example.:7", "[fd00::1]"}) {
        EXPECT_EQ(
            Ask(server.Port(), std::string("GET /healthz HTTP/1.1\r\nHost: ") + host + "\r\n\r\n")
                .status,
            200)
            << host;
    }
    for (char const* host : {"elsewhere", "127.0.0.2", "device.example.org", "localhost:x", ""}) {
        EXPECT_EQ(
            Ask(server.Port(), std::string("GET /healthz HTTP/1.1\r\nHost: ") + host + "\r\n\r\n")
                .status,
            421)
            << host;
    }
}

}  // namespace
