// Who may change something: forms, and what a form has to carry.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

char const origin[] = "Origin: http://localhost\r\n";

// A reader who has opened the page with the form.
struct Reader {
    explicit Reader(int port) {
        Reply const reply = Get(port, "/form");
        std::string const kept = reply.Header("Set-Cookie");
        cookie = "Cookie: " + kept.substr(0, kept.find(';')) + "\r\n";
        std::string const mark = "name=\"token\" type=\"hidden\" value=\"";
        token = reply.body.substr(reply.body.find(mark) + mark.size(), 64);
    }

    std::string cookie;
    std::string token;
};

TEST(Posting, PageSeesTheFields) {
    Server server;
    Reader const reader(server.Port());
    Reply const reply =
        Ask(server.Port(),
            FormText("/echo", "token=" + reader.token + "&a=1&a=%2B+%C3%A9&empty=&x%3D=%26",
                     reader.cookie + origin));
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body.substr(0, reply.body.find('\n')), "method POST");
    EXPECT_NE(reply.body.find("field a=+ \u00e9\nfield empty=\nfield token=" + reader.token +
                              "\nfield x==&\n"),
              std::string::npos)
        << reply.body;
}

TEST(Posting, FormMayComeInPieces) {
    Server server;
    Reader const reader(server.Port());
    std::string const text =
        FormText("/echo", "token=" + reader.token + "&long=" + std::string(60000, 'y'),
                 reader.cookie + origin);
    Client const client(server.Port());
    for (std::size_t at = 0; at < text.size(); at += 1000) {
        client.Send(text.substr(at, 1000));
    }
    EXPECT_NE(client.Read().body.find("field long=" + std::string(60000, 'y') + "\n"),
              std::string::npos);
}

TEST(Posting, BodyIsAskedForWhenItIsHeldBack) {
    Server server;
    Reader const reader(server.Port());
    std::string const body = "token=" + reader.token;
    std::string const text =
        FormText("/much?bytes=3", body, reader.cookie + origin + "Expect: 100-continue\r\n");
    Client const client(server.Port());
    client.Send(text.substr(0, text.size() - body.size()));
    EXPECT_EQ(client.ReadUntil("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
    client.Send(body);
    std::string const rest = client.ReadAll();
    EXPECT_NE(rest.find("HTTP/1.1 200 OK\r\n"), std::string::npos) << rest;
    EXPECT_EQ(rest.substr(rest.size() - 5), "\r\nxxx") << rest;
}

TEST(Posting, EveryWorkerKnowsTheSession) {
    Server server({"--max-requests", "1"});
    Reader const reader(server.Port());
    for (int i = 0; i < 5; ++i) {
        Reply const reply =
            Ask(server.Port(), FormText("/echo", "token=" + reader.token, reader.cookie + origin));
        EXPECT_EQ(reply.status, 200);
        EXPECT_FALSE(reply.Has("Set-Cookie"));
    }
}

TEST(Posting, ForgedFormsAreRefused) {
    Server server;
    Reader const reader(server.Port());
    Reader const other(server.Port());
    std::string const form = "token=" + reader.token;
    std::string const unknown =
        "Cookie: quillo_session=" + std::string(32, '0') + "." + std::string(64, '0') + "\r\n";
    struct Row {
        char const* what;
        std::string body;
        std::string fields;
    };
    for (Row const& row : {
             Row{"no token", "a=1", reader.cookie + origin},
             Row{"an empty token", "token=", reader.cookie + origin},
             Row{"another reader's token", "token=" + other.token, reader.cookie + origin},
             Row{"no cookie", form, origin},
             Row{"an unknown session", form, unknown + origin},
             Row{"no origin", form, reader.cookie},
             Row{"another origin", form, reader.cookie + "Origin: http://elsewhere\r\n"},
             Row{"another port", form, reader.cookie + "Origin: http://localhost:1\r\n"},
             Row{"a hidden origin", form, reader.cookie + "Origin: null\r\n"},
         }) {
        Reply const reply = Ask(server.Port(), FormText("/echo", row.body, row.fields));
        EXPECT_EQ(reply.status, 403) << row.what;
        EXPECT_EQ(reply.body.find("method POST"), std::string::npos) << row.what;
    }
    EXPECT_EQ(
        Ask(server.Port(), FormText("/echo", form, reader.cookie + "Origin: HTTPS://Localhost\r\n"))
            .status,
        200);
}

TEST(Posting, OnlyFormsAreTaken) {
    Server server;
    Reader const reader(server.Port());
    std::string const body = "token=" + reader.token;
    for (char const* type : {"", "Content-Type: text/plain\r\n",
                             "Content-Type: multipart/form-data; boundary=x\r\n"}) {
        EXPECT_EQ(Ask(server.Port(),
                      RequestText("/echo",
                                  type + reader.cookie + origin +
                                      "Content-Length: " + std::to_string(body.size()) + "\r\n",
                                  "POST") +
                          body)
                      .status,
                  415)
            << type;
    }
}

TEST(Posting, FilesAreOnlyRead) {
    Server server;
    for (char const* path : {"/style.css", "/", "/healthz"}) {
        Reply const reply = Ask(server.Port(), FormText(path, ""));
        EXPECT_EQ(reply.status, 405) << path;
        EXPECT_EQ(reply.Header("Allow"), "GET, HEAD") << path;
    }
}

}  // namespace
