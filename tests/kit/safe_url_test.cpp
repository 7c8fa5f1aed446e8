#include <quillo_kit/safe.hpp>

#include <regex>

#include "kit/attribute_value.hpp"
#include "support/page_test.hpp"
#include "text/sample_texts.hpp"

using namespace QuilloKit;

namespace {

class SafeUrlTest : public PageTest {
protected:
    ~SafeUrlTest() override { EXPECT_EQ(Platform().Trace(), "") << "nothing is reported"; }
};

struct Row {
    std::string url;
    std::string written;
};

void Expect(std::vector<Row> const& rows) {
    for (Row const& row : rows) {
        EXPECT_EQ(SafeUrl(row.url), row.written) << row.url;
    }
}

TEST_F(SafeUrlTest, HttpHttpsAndMailtoAreAllowedInAnyCase) {
    Expect({{"http://a/b", "http://a/b"},
            {"HTTPS://a/b?c:d#e:f", "HTTPS://a/b?c:d#e:f"},
            {"hTTp:a", "hTTp:a"},
            {"MailTo:a@b", "MailTo:a@b"},
            {"http:", "http:"},
            {"http:javascript:alert(1)", "http:javascript:alert(1)"}});
}

TEST_F(SafeUrlTest, RelativeReferencesAreAllowed) {
    Expect({{"", ""},
            {"/", "/"},
            {"a", "a"},
            {"//host", "//host"},
            {"\\\\host", "\\\\host"},
            {"/a:b", "/a:b"},
            {"./a:b/c", "./a:b/c"},
            {"?a:b", "?a:b"},
            {"#a:b", "#a:b"},
            {"a/b:c", "a/b:c"},
            {"a b", "a b"},
            {"\xC3\xBC", "\xC3\xBC"},
            {"javascript", "javascript"},
            {"javascript/:alert(1)", "javascript/:alert(1)"}});
}

TEST_F(SafeUrlTest, EveryOtherSchemeIsRefused) {
    for (std::string const url : {"javascript:alert(1)",
                                  "JavaScript:alert(1)",
                                  "java\tscript:alert(1)",
                                  "java\nscript:alert(1)",
                                  "java\r\nscript:alert(1)",
                                  "\tjavascript:x",
                                  " javascript:x",
                                  "\x01\x1F javascript:x",
                                  "javascript\t:x",
                                  "j\na\tv\ra\nscript:x",
                                  "javascript://%0Aalert(1)",
                                  "vbscript:x",
                                  "data:text/html,<script>x</script>",
                                  "DATA:,x",
                                  "blob:x",
                                  "file:///etc/passwd",
                                  "ftp://a",
                                  "about:blank",
                                  "view-source:http://a",
                                  "ws://a",
                                  "feed:javascript:x",
                                  "httpx://a",
                                  "xhttp://a",
                                  "http+x://a",
                                  "htt:p",
                                  "a:b/c",
                                  "C:\\a"}) {
        EXPECT_EQ(SafeUrl(url), "#") << url;
    }
}

TEST_F(SafeUrlTest, WhatStandsAheadOfTheFirstColonMustBeAnAllowedScheme) {
    for (std::string const url :
         {":foo", ":", "::", ":javascript:x", "1:b", "java script:x", "%6Aavascript:x", "http :a",
          "\xEF\xBD\x8A"
          "avascript:x",
          "\xC2\xA0javascript:x", "\xE2\x80\xA8javascript:x", "\xEF\xBB\xBFjavascript:x", "a\\b:c",
          "&colon;:x", "http\xC2\xAD://a", "\xFF:x"}) {
        EXPECT_EQ(SafeUrl(url), "#") << url;
    }
}

TEST_F(SafeUrlTest, EntitiesAndEscapesAreNotDecodedForTheBrowser) {
    Expect({{"javascript&#58;alert(1)", "javascript&amp;#58;alert(1)"},
            {"javascript&colon;alert(1)", "javascript&amp;colon;alert(1)"},
            {"&#106;avascript/", "&amp;#106;avascript/"},
            {"javascript%3Aalert(1)", "javascript%3Aalert(1)"}});
}

TEST_F(SafeUrlTest, BlanksAndControlBytesAtTheEndsAndLineBreaksAndTabsAnywhereAreDropped) {
    Expect({{" \t\n/a \r\x01\x1F", "/a"},
            {std::string("\0/a\0 ", 5), "/a"},
            {"/a\tb\r\nc\n", "/abc"},
            {"ht\ntp\t:/\r/a", "http://a"},
            {" \n\t\r\x1F", ""},
            {"/ a ", "/ a"},
            {"/a\xC2\xA0", "/a\xC2\xA0"}});
}

TEST_F(SafeUrlTest, AControlByteThatIsLeftIsRefused) {
    Expect({{"/a\x01"
             "b",
             "#"},
            {"/a\x1F"
             "b",
             "#"},
            {"/a\x7F", "#"},
            {"\x7F/a", "#"},
            {std::string("java\0script:alert(1)", 20), "#"},
            {std::string("/a\0b", 4), "#"},
            {"http://a\x0B"
             "b",
             "#"},
            {"/a\x0C"
             "b",
             "#"}});
}

TEST_F(SafeUrlTest, TheResultIsFitForAnAttribute) {
    Expect({{"/a?b=1&c=2", "/a?b=1&amp;c=2"},
            {"/\"onload=\"x", "/&quot;onload=&quot;x"},
            {"/' onload='x", "/&#39; onload=&#39;x"},
            {"http://a/<b>", "http://a/&lt;b&gt;"},
            {"mailto:a?subject=\"><script>", "mailto:a?subject=&quot;&gt;&lt;script&gt;"}});
}

// The rule once more, as regular expressions.
std::string Expected(std::string const& url) {
    static std::regex const ends("^[\\x01-\\x20]+|[\\x01-\\x20]+$");
    static std::regex const lineBreaks("[\\t\\r\\n]");
    static std::regex const control("[\\x01-\\x1f\\x7f]");
    static std::regex const allowed("(https?|mailto):[^]*|[^:/?#]*([/?#][^]*)?", std::regex::icase);
    std::string const line = std::regex_replace(std::regex_replace(url, ends, ""), lineBreaks, "");
    return !std::regex_search(line, control) && std::regex_match(line, allowed) ? line : "#";
}

void ExpectTheRule(std::string const& url) {
    EXPECT_EQ(TextOf(SafeUrl(url)), Expected(url)) << url;
}

TEST_F(SafeUrlTest, EveryByteInEveryPlaceFollowsTheRule) {
    for (std::string const url :
         {"", "x", "javascript:x", "http://a", "mailto:a", "//a/b", ":a", "?a:b", "a:b"}) {
        for (char const c : AllBytes()) {
            for (std::size_t at = 0; at <= url.size(); ++at) {
                ExpectTheRule(std::string(url).insert(at, 1, c));
            }
        }
    }
}

TEST_F(SafeUrlTest, NulIsAControlByte) {
    for (std::string const url : {"x", "javascript:x", "http://a", "/a"}) {
        for (std::size_t at = 0; at <= url.size(); ++at) {
            std::string const nul = std::string(url).insert(at, 1, '\0');
            bool const isAtAnEnd = at == 0 || at == url.size();
            EXPECT_EQ(SafeUrl(nul), isAtAnEnd ? SafeUrl(url) : "#") << url << at;
        }
    }
}

TEST_F(SafeUrlTest, EveryShortTextFollowsTheRule) {
    for (std::string const& text : AllTexts("a:/?# \t\x01", 5)) {
        ExpectTheRule(text);
        ExpectTheRule("http" + text);
    }
}

}  // namespace
