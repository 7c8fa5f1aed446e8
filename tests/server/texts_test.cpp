// The small text functions of the server.
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <content_security.hpp>
#include <digests.hpp>
#include <host_names.hpp>
#include <incoming.hpp>
#include <listener.hpp>
#include <query.hpp>
#include <static_files.hpp>
#include <string>

namespace {

using namespace QuilloServer;

std::string DigestOf(std::string const& text) {
    return " 'sha256-" + Sha256Base64(text) + "'";
}

std::string Policy(std::string const& scripts, std::string const& styles) {
    return "default-src 'none'; connect-src 'self'; img-src 'self'; script-src 'self'" + scripts +
           "; style-src 'self'" + styles +
           "; style-src-attr 'unsafe-inline'; form-action 'self'; base-uri 'none'; "
           "frame-ancestors 'none'";
}

TEST(Digests, AreThoseOfTheStandards) {
    // FIPS 180-4 and RFC 4231, test case 2.
    EXPECT_EQ(Sha256Base64("abc"), "ungWv48Bz+pBQUDeXa4iI7ADYaOWF3qctBD/YfIAFa0=");
    EXPECT_EQ(KeyedDigest("Jefe", "what do ya want for nothing?"),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
    EXPECT_TRUE(IsSameSecret("ab", "ab"));
    EXPECT_FALSE(IsSameSecret("ab", "ac"));
    EXPECT_FALSE(IsSameSecret("ab", "a"));
    EXPECT_EQ(RandomBytes(16).size(), 16U);
    EXPECT_NE(RandomBytes(16), RandomBytes(16));
}

TEST(Form, IsReadFieldByField) {
    struct Row {
        std::string body;
        Quillo::UriArgs fields;
    };
    for (Row const& row : {
             Row{"", {}},
             Row{"a=1", {{"a", "1"}}},
             Row{"a=1&b=x+y%3Dz&c", {{"a", "1"}, {"b", "x y=z"}, {"c", ""}}},
             Row{"a=1&a=2", {{"a", "2"}}},
             Row{"&&a=&&", {{"a", ""}}},
             Row{"=x", {{"", "x"}}},
             Row{"a=b=c&d==", {{"a", "b=c"}, {"d", "="}}},
             Row{"%61+%2B=%26+%2b", {{"a +", "& +"}}},
             Row{"a=%C3%A9\xc3\xa9", {{"a", "\u00e9\u00e9"}}},
             Row{std::string(5000, 'n') + "=1", {{std::string(5000, 'n'), "1"}}},
         }) {
        EXPECT_EQ(ReadForm(row.body), row.fields) << row.body;
    }
}

TEST(ContentSecurity, AllowsTheLibrarysScriptAlone) {
    std::string const start = "<script type=\"text/javascript\">";
    std::string const end = "</script>";
    std::string const focus = "document.form.field_1.focus();";
    EXPECT_EQ(SecurityPolicy(""), Policy("", ""));
    EXPECT_EQ(SecurityPolicy(start + focus + end), Policy(DigestOf(focus), ""));
    EXPECT_EQ(SecurityPolicy(start + focus + end + start + focus + end),
              Policy(DigestOf(focus), ""));
    for (char const* script :
         {"alert(1)", "document.a.b.focus();alert(1)", "document.a.b.c.focus();",
          "document.a.focus();", "document..b.focus();", "document.a.b().focus();",
          "document.a.b.focus();\n", "x=document.a.b.focus();", "document.a;b.focus();", ""}) {
        EXPECT_EQ(SecurityPolicy(start + script + end), Policy("", "")) << script;
    }
    EXPECT_EQ(SecurityPolicy("<script>" + focus + end), Policy("", ""));
    EXPECT_EQ(SecurityPolicy(start + focus), Policy("", ""));
}

TEST(ContentSecurity, AllowsTheHeadsStyleSheets) {
    EXPECT_EQ(SecurityPolicy("<head><style>a</style><style>b</style></head>"
                             "<body><style>c</style></body>"),
              Policy("", DigestOf("a") + DigestOf("b")));
}

TEST(HostNames, AreReadFromTheHostField) {
    struct Row {
        char const* authority;
        char const* name;
    };
    for (Row const& row : {Row{"Localhost", "localhost"}, Row{"a.example:80", "a.example"},
                           Row{"a.example.", "a.example"}, Row{"a.example..", ""}, Row{".", ""},
                           Row{"..", ""}, Row{"[::1]:80", "[::1]"}, Row{"[FD00::1]", "[fd00::1]"},
                           Row{"a:b", ""}, Row{"a:1:2", ""}, Row{"[::1]x", ""}, Row{"", ""}}) {
        EXPECT_EQ(HostName(row.authority), row.name) << row.authority;
    }
}

TEST(Target, IsTakenApart) {
    struct Row {
        char const* target;
        char const* host;
        char const* path;
        char const* query;
    };
    for (Row const& row :
         {Row{"/", "h", "/", ""}, Row{"/a?b=c?d", "h", "/a", "b=c?d"}, Row{"/a?", "h", "/a", ""},
          Row{"http://x:1/a?b", "x:1", "/a", "b"}, Row{"HTTP://x", "x", "/", ""},
          Row{"http://x?b", "x", "/", "b"}, Row{"*", "h", "*", ""}}) {
        Incoming incoming;
        incoming.host = "h";
        TakeTarget(incoming, row.target);
        EXPECT_EQ(incoming.host, row.host) << row.target;
        EXPECT_EQ(incoming.path, row.path) << row.target;
        EXPECT_EQ(incoming.query, row.query) << row.target;
    }
}

TEST(Form, IsKnownByItsType) {
    EXPECT_TRUE(IsForm("application/x-www-form-urlencoded"));
    EXPECT_TRUE(IsForm("Application/X-WWW-Form-Urlencoded ; charset=utf-8"));
    EXPECT_FALSE(IsForm("application/x-www-form-urlencoded2"));
    EXPECT_FALSE(IsForm(""));
}

TEST(QueryArgument, IsTheLastOfItsName) {
    EXPECT_EQ(QueryArgument("a=1&LANGUAGE=de%2Dde", "LANGUAGE"), "de-de");
    EXPECT_EQ(QueryArgument("LANGUAGE=de&LANGUAGE=ar", "LANGUAGE"), "ar");
    EXPECT_EQ(QueryArgument("XLANGUAGE=de&LANGUAGES=ar", "LANGUAGE"), "");
    EXPECT_EQ(QueryArgument("", "LANGUAGE"), "");
}

TEST(Tag, IsFoundInAList) {
    EXPECT_TRUE(IsTagNamed("\"a\"", "\"a\""));
    EXPECT_TRUE(IsTagNamed("\"b\", W/\"a\"", "\"a\""));
    EXPECT_TRUE(IsTagNamed("*", "\"a\""));
    EXPECT_FALSE(IsTagNamed("\"b\"", "\"a\""));
    EXPECT_FALSE(IsTagNamed("", "\"a\""));
}

TEST(HostNames, MayBeGivenWithoutBrackets) {
    EXPECT_EQ(GivenHostName("fd00::1"), "[fd00::1]");
    EXPECT_EQ(GivenHostName("[fd00::1]:80"), "[fd00::1]");
    EXPECT_EQ(GivenHostName("Device:80"), "device");
}

TEST(Listener, LetsTheSystemKeepAWholeAnswer) {
    Descriptor const listener = Listen({"127.0.0.1", "0"});
    Descriptor const plain(socket(AF_INET, SOCK_STREAM, 0));
    int sizes[2] = {0, 0};
    socklen_t size = sizeof(int);
    getsockopt(listener.Get(), SOL_SOCKET, SO_SNDBUF, &sizes[0], &size);
    getsockopt(plain.Get(), SOL_SOCKET, SO_SNDBUF, &sizes[1], &size);
    EXPECT_GE(sizes[0], 200000);
    EXPECT_GT(sizes[0], sizes[1]);
}

TEST(Endpoint, IsReadFromText) {
    EXPECT_EQ(ParseEndpoint("127.0.0.1:8080").address, "127.0.0.1");
    EXPECT_EQ(ParseEndpoint("127.0.0.1:8080").port, "8080");
    EXPECT_EQ(ParseEndpoint("[::1]:0").address, "::1");
    EXPECT_THROW(ParseEndpoint("::1:0"), std::invalid_argument);
    EXPECT_THROW(ParseEndpoint("[localhost]:0"), std::invalid_argument);
}

}  // namespace
