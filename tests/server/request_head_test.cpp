#include <gtest/gtest.h>

#include <request_head.hpp>
#include <string>

namespace {

using QuilloServer::HeadJudgement;
using QuilloServer::JudgeHead;

std::string Shown(std::string const& bytes) {
    HeadJudgement const judgement = JudgeHead(bytes);
    if (judgement.refusal != 0) {
        return std::to_string(judgement.refusal);
    }
    return judgement.size == 0 ? "more" : "size " + std::to_string(judgement.size);
}

TEST(RequestHead, IsJudgedByItsFirstLine) {
    struct Row {
        char const* line;
        char const* judgement;
    };
    for (Row const& row : {
             Row{"GET / HTTP/1.1", "size 27"},
             Row{"GET / HTTP/1.0", "size 27"},
             Row{"M-SEARCH * HTTP/1.1", "size 32"},
             Row{"GET /", "400"},
             Row{"GET  HTTP/1.1", "400"},
             Row{"GET /a b HTTP/1.1", "400"},
             Row{"GET  / HTTP/1.1", "400"},
             Row{"G(T / HTTP/1.1", "400"},
             Row{" / HTTP/1.1", "400"},
             Row{"GET /\x01 HTTP/1.1", "400"},
             Row{"GET /\xc3\xa9 HTTP/1.1", "400"},
             Row{"GET http://a/ HTTP/1.1", "size 35"},
             Row{"GET echo HTTP/1.1", "400"},
             Row{"CONNECT a:80 HTTP/1.1", "400"},
             Row{"GET / FTP/1.1", "400"},
             Row{"GET / HTTP/1.2", "505"},
             Row{"GET / HTTP/3", "505"},
         }) {
        EXPECT_EQ(Shown(row.line + std::string("\r\nHost: a\r\n\r\n")), row.judgement) << row.line;
    }
}

TEST(RequestHead, IsJudgedByItsFields) {
    struct Row {
        char const* fields;
        char const* judgement;
    };
    for (Row const& row : {
             Row{"Host: a\r\n", "size 27"},
             Row{"HOST:a\r\n", "size 26"},
             Row{"Host: a\r\nContent-Length: 5\r\n", "size 51"},
             Row{"Host: a\r\ncontent-length:\t5 \r\n", "size 52"},
             Row{"Host: a\r\nContent-Length: 65536\r\n", "size 65586"},
             Row{"Host: a\r\nContent-Length: 65537\r\n", "413"},
             Row{"Host: a\r\nContent-Length: 99999999999999999999\r\n", "413"},
             Row{"Host: a\r\nContent-Length: -1\r\n", "400"},
             Row{"Host: a\r\nContent-Length: +1\r\n", "400"},
             Row{"Host: a\r\nContent-Length: 1,1\r\n", "400"},
             Row{"Host: a\r\nContent-Length:\r\n", "400"},
             Row{"Host: a\r\nContent-Length: 1\r\nContent-Length: 1\r\n", "400"},
             Row{"Host: a\r\nTransfer-Encoding: chunked\r\n", "411"},
             Row{"", "400"},
             Row{"Host: a\r\nHost: a\r\n", "400"},
             Row{"Host : a\r\n", "400"},
             Row{"Host: a\r\n folded\r\n", "400"},
             Row{"Host: a\r\nnothing\r\n", "400"},
             Row{"Host: a\r\n: nameless\r\n", "400"},
             Row{"Host: a\r\nX: \x01\r\n", "400"},
             Row{"Host: a\r\nX: one\nline\r\n", "400"},
             Row{"Host: a\r\nX: \xff\r\n", "size 33"},
         }) {
        EXPECT_EQ(Shown(std::string("GET / HTTP/1.1\r\n") + row.fields + "\r\n"), row.judgement)
            << row.fields;
    }
}

TEST(RequestHead, MayHaveAnyCookieButALoneQuotationMark) {
    for (char const* cookies :
         {"", "a", "a=", "a=1", "a=\"\"", "a=\"x=\"", "a=\"b", "a=b\"", "\"", "\"; a", "a=\"; b=\"",
          "a=\"; b=1", "=", ";", "a=1; b=\"c;d\"; e"}) {
        EXPECT_EQ(Shown("GET / HTTP/1.1\r\nHost: a\r\nCookie: " + std::string(cookies) + "\r\n\r\n")
                      .substr(0, 4),
                  "size")
            << cookies;
    }
    for (char const* cookies :
         {"a=\"", "=\"", "a=1; b=\"", "a=1,b=\"", "\"; a=\"", "a=\"b\"; c=\""}) {
        EXPECT_EQ(
            Shown("GET / HTTP/1.1\r\nHost: a\r\nCookie: " + std::string(cookies) + "\r\n\r\n"),
            "400")
            << cookies;
    }
}

TEST(RequestHead, HasAtMostAHundredFields) {
    std::string fields = "Host: a\r\n";
    for (int i = 1; i < 100; ++i) {
        fields += "a:\r\n";
    }
    EXPECT_EQ(Shown("GET / HTTP/1.1\r\n" + fields + "\r\n"), "size 423");
    EXPECT_EQ(Shown("GET / HTTP/1.1\r\n" + fields + "a:\r\n\r\n"), "431");
}

TEST(RequestHead, IsAwaitedUntilItsEnd) {
    std::string const head = "POST /form HTTP/1.1\r\nHost: a\r\nContent-Length: 3\r\n\r\n";
    for (std::size_t size = 0; size < head.size(); ++size) {
        EXPECT_EQ(Shown(head.substr(0, size)), "more") << size;
    }
    std::string const size = "size " + std::to_string(head.size() + 3);
    EXPECT_EQ(Shown(head), size);
    EXPECT_EQ(Shown(head + "a=1"), size);
}

TEST(RequestHead, IsRefusedBeforeItsEndWhenItCannotBecomeOne) {
    EXPECT_EQ(Shown("\x16\x03\x01"), "400");
    EXPECT_EQ(Shown("\r\nGET"), "400");
    EXPECT_EQ(Shown("\nGET"), "400");
    EXPECT_EQ(Shown("GET / HTTP/1.1\n"), "400");
    EXPECT_EQ(Shown("GET / HTTP/1.1\r\nHost: a\n"), "more");
    EXPECT_EQ(Shown("GET /" + std::string(8192, 'a')), "more");
    EXPECT_EQ(Shown("GET /" + std::string(8300, 'a')), "414");
    EXPECT_EQ(Shown("GET / HTTP/1.1\r\nX: " + std::string(16365, 'a')), "more");
    EXPECT_EQ(Shown("GET / HTTP/1.1\r\nX: " + std::string(16366, 'a')), "431");
}

TEST(RequestHead, TellsWhetherTheClientHoldsTheBodyBack) {
    std::string const head = "POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 1\r\n";
    EXPECT_FALSE(JudgeHead(head + "\r\n").isContinueExpected);
    EXPECT_TRUE(JudgeHead(head + "Expect: 100-Continue\r\n\r\n").isContinueExpected);
    EXPECT_FALSE(JudgeHead(head + "Expect: miracles\r\n\r\n").isContinueExpected);
}

}  // namespace
