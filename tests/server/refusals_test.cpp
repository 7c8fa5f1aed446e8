// What is refused, and how: every refusal is a page of its own.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

struct Row {
    char const* what;
    std::string request;
    int status;
};

std::string Filled(std::size_t size) {
    return std::string(size, 'a');
}

void ExpectRefusals(int port, std::vector<Row> const& rows) {
    for (Row const& row : rows) {
        Reply const reply = Ask(port, row.request);
        EXPECT_EQ(reply.status, row.status) << row.what;
        EXPECT_EQ(reply.Header("Content-Type"), "text/html; charset=utf-8") << row.what;
        EXPECT_EQ(reply.Header("Cache-Control"), "no-store") << row.what;
        EXPECT_EQ(reply.Header("Connection"), "close") << row.what;
        EXPECT_EQ(reply.Header("X-Content-Type-Options"), "nosniff") << row.what;
        EXPECT_EQ(reply.Header("Cross-Origin-Resource-Policy"), "same-origin") << row.what;
        EXPECT_NE(reply.Header("Content-Security-Policy").find("frame-ancestors 'none'"),
                  std::string::npos)
            << row.what;
        EXPECT_EQ(reply.Header("Content-Length"), std::to_string(reply.body.size())) << row.what;
        EXPECT_EQ(reply.body.compare(0, 16, "<!DOCTYPE html>\n"), 0) << row.what;
    }
}

TEST(Refusals, OfWhatIsNotThere) {
    Server server;
    ExpectRefusals(server.Port(),
                   {{"no page", RequestText("/nothing"), 404},
                    {"another case", RequestText("/Echo"), 404},
                    {"below a page", RequestText("/echo/"), 404},
                    {"a path upwards", RequestText("/../etc/passwd"), 404},
                    {"a method", RequestText("/echo", "", "PUT"), 405},
                    {"a method", RequestText("/nothing", "", "DELETE"), 405},
                    {"another host", "GET /echo HTTP/1.1\r\nHost: elsewhere\r\n\r\n", 421}});
    EXPECT_EQ(Ask(server.Port(), RequestText("/echo", "", "OPTIONS")).Header("Allow"),
              "GET, HEAD, POST");
}

TEST(Refusals, OfWhatIsTooMuch) {
    Server server;
    std::string const longest = "/healthz?" + Filled(8192 - 9);
    std::string const head = RequestText("/healthz", "X: \r\n");
    std::string const full = RequestText("/healthz", "X: " + Filled(16384 - head.size()) + "\r\n");
    EXPECT_EQ(Get(server.Port(), longest).status, 200);
    EXPECT_EQ(Ask(server.Port(), full).status, 200);
    ExpectRefusals(
        server.Port(),
        {{"a long query", RequestText(longest + "a"), 414},
         {"an endless query", "GET /" + Filled(100000), 414},
         {"a long header", RequestText("/healthz", "X: " + Filled(16385 - head.size()) + "\r\n"),
          431},
         {"an endless header", "GET / HTTP/1.1\r\nX: " + Filled(100000), 431},
         {"a long form", FormText("/echo", Filled(65537)), 413},
         {"a form of unheard length",
          RequestText("/echo", "Content-Length: 99999999999999999999999\r\n", "POST"), 413},
         {"a form that may not be sent at all",
          RequestText("/echo", "Expect: 100-continue\r\nContent-Length: 65537\r\n", "POST"), 413}});
    EXPECT_EQ(Ask(server.Port(), FormText("/echo", Filled(65536))).status, 403);
}

TEST(Refusals, OfWhatIsNotUnderstood) {
    Server server;
    ExpectRefusals(
        server.Port(),
        {{"no request line", "hello\r\n\r\n", 400},
         {"no text", std::string("\x16\x03\x01\0\0", 5), 400},
         {"no host", "GET / HTTP/1.1\r\n\r\n", 400},
         {"two hosts", RequestText("/", "Host: localhost\r\n"), 400},
         {"two lengths", RequestText("/", "Content-Length: 1\r\nContent-Length: 1\r\n"), 400},
         {"a piecemeal form", RequestText("/", "Transfer-Encoding: chunked\r\n", "POST"), 411},
         {"an old protocol", "GET / HTTP/0.9\r\nHost: localhost\r\n\r\n", 505},
         {"a new protocol", "GET / HTTP/2.0\r\nHost: localhost\r\n\r\n", 505}});
}

TEST(Refusals, OfWhatDoesNotArriveInTime) {
    Server server({"--patience", "0.2"});
    std::string const form = FormText("/echo", "a=1");
    ExpectRefusals(server.Port(), {{"half a head", "GET /echo HTTP/1.1\r\nHo", 408},
                                   {"half a form", form.substr(0, form.size() - 1), 408},
                                   {"nothing", "", 408}});
}

TEST(Refusals, ArePages) {
    Server server;
    Reply const reply = Get(server.Port(), "/nothing");
    // Its own style sheet is one that its policy allows.
    EXPECT_NE(reply.Header("Content-Security-Policy").find("; style-src 'self' 'sha256-"),
              std::string::npos);
    EXPECT_EQ(reply.body,
              "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
              "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
              "<meta name=\"color-scheme\" content=\"light dark\">\n"
              "<title>No such page</title>\n<style>\n"
              "body { max-width: 36rem; margin: 10vh auto; padding: 0 1rem; font: 16px/1.5 "
              "system-ui, sans-serif; }\nh1 { font-size: 1.6rem; line-height: 1.25; }\n"
              "</style>\n</head>\n<body>\n<main>\n<h1>No such page</h1>\n"
              "<p>There is nothing under this address.</p>\n"
              "<p><a href=\"/\">First page</a></p>\n</main>\n</body>\n</html>\n");
}

TEST(Refusals, OfAHeadHaveNoBody) {
    Server server;
    for (std::string const& request :
         {RequestText("/nothing", "", "HEAD"), RequestText("/", "Host: localhost\r\n", "HEAD")}) {
        Reply const reply = Ask(server.Port(), request);
        EXPECT_GE(reply.status, 400);
        EXPECT_NE(reply.Header("Content-Length"), "0");
        EXPECT_EQ(reply.body, "");
    }
}

TEST(Refusals, AreReadToTheEndByAClientThatGoesOnSending) {
    Server server;
    Client const client(server.Port());
    client.Send(FormText("/echo", Filled(300000)));
    EXPECT_EQ(ParseReply(client.ReadUntil("</html>\n")).status, 413);
    // A connection that was closed would be reset by the first of these.
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(client.Send(Filled(1000)));
    }
    client.EndSending();
    EXPECT_EQ(client.ReadAll(), "");
}

TEST(Refusals, OfManyClientsEndTheOldest) {
    Server server;
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 101; ++i) {
        clients.push_back(std::make_unique<Client>(server.Port()));
        clients.back()->Send("\r\n");
        EXPECT_EQ(ParseReply(clients.back()->ReadUntil("</html>\n")).status, 400);
    }
    // The answer to the first of these is that the connection is gone.
    EXPECT_TRUE(clients.front()->Send("a"));
    EXPECT_FALSE(clients.front()->Send("a"));
}

TEST(Refusals, ClientThatGoesAwayHalfWayIsForgotten) {
    Server server;
    Client const client(server.Port());
    client.Send("GET /echo HTTP/1.1\r\n");
    client.EndSending();
    EXPECT_EQ(client.ReadAll(), "");
}

}  // namespace
