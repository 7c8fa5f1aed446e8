#include <quillo_kit/elements.hpp>

#include <sstream>

#include "support/page_test.hpp"

using namespace Quillo;
namespace Kit = QuilloKit;
using Kit::operator<<;

namespace {

class ElementsTest : public PageTest {
protected:
    // The tree in debug mode, four levels deep: whatever is indented shows.
    static std::string Indented(Element const& root) {
        isDebug = true;
        std::string const html = Html(root, 4);
        isDebug = false;
        return html;
    }
};

using ElementsGoldenTest = ElementsTest;

struct Row {
    Element element;
    std::string html;
};

// `element` is of a kind that holds its children on lines of their own.
Row Block(Element const& element, std::string const& tag) {
    return {element << Br() << Text("t", true), "<" + tag + ">\n<br >\nt</" + tag + ">\n"};
}

Row OneLine(Element const& element, std::string const& tag) {
    return {element << Br() << Text("t", true), "<" + tag + "><br >t</" + tag + ">\n"};
}

Row Void(Element const& element, std::string const& tag) {
    return {element, "<" + tag + " >\n"};
}

TEST_F(ElementsTest, EachKindIsWrittenWithItsTagInItsForm) {
    for (Row const& row : std::vector<Row>{Block(Kit::Html(), "html"),
                                           Block(Kit::Head(), "head"),
                                           Void(Kit::Meta(), "meta"),
                                           Void(Kit::Link(), "link"),
                                           OneLine(Kit::Title(), "title"),
                                           Block(Kit::Body(), "body"),
                                           Block(Kit::Header(), "header"),
                                           Block(Kit::Nav(), "nav"),
                                           Block(Kit::Main(), "main"),
                                           Block(Kit::Section(), "section"),
                                           Block(Kit::Aside(), "aside"),
                                           Block(Kit::Footer(), "footer"),
                                           OneLine(Kit::H1(), "h1"),
                                           OneLine(Kit::H3(), "h3"),
                                           OneLine(Kit::P(), "p"),
                                           Block(Kit::Ul(), "ul"),
                                           Block(Kit::Ol(), "ol"),
                                           OneLine(Kit::Li(), "li"),
                                           OneLine(Kit::Code(), "code"),
                                           OneLine(Kit::Strong(), "strong"),
                                           OneLine(Kit::Small(), "small"),
                                           OneLine(Kit::Time(), "time"),
                                           Block(Kit::Details(), "details"),
                                           OneLine(Kit::Summary(), "summary"),
                                           Block(Kit::Form(), "form"),
                                           Block(Kit::Fieldset(), "fieldset"),
                                           OneLine(Kit::Legend(), "legend"),
                                           OneLine(Kit::Label(), "label"),
                                           Void(Kit::Input(), "input"),
                                           Block(Kit::Select(), "select"),
                                           OneLine(Kit::Option(), "option"),
                                           OneLine(Kit::Button(), "button"),
                                           OneLine(Kit::Meter(), "meter"),
                                           OneLine(Kit::Progress(), "progress"),
                                           OneLine(Kit::Caption(), "caption"),
                                           Block(Kit::Thead(), "thead"),
                                           Block(Kit::Tbody(), "tbody"),
                                           Block(Kit::Tfoot(), "tfoot"),
                                           Block(Kit::Tr(), "tr"),
                                           OneLine(Kit::Th(), "th"),
                                           OneLine(Kit::Td(), "td"),
                                           Block(Kit::Tag("x-y"), "x-y"),
                                           Void(Kit::VoidTag("hr"), "hr"),
                                           OneLine(Kit::TextTag("b"), "b")}) {
        EXPECT_EQ(Html(row.element), row.html);
    }
}

TEST_F(ElementsTest, ALeafRefusesChildren) {
    for (Element const& leaf :
         std::vector<Element>{Kit::Meta(), Kit::Link(), Kit::Input(), Kit::VoidTag("hr"),
                              Kit::Doctype(), Kit::Script("a"), Kit::Style("a")}) {
        EXPECT_THROW(leaf << Text("x", true), Glb::Error);
        EXPECT_THROW(leaf << std::string("x"), Glb::Error);
        EXPECT_TRUE(leaf.impl->children.empty());
    }
}

TEST_F(ElementsTest, TextIsEscapedAndEmptyTextAddsNothing) {
    EXPECT_EQ(Html(Kit::P("a<b>&\"c'")), "<p>a&lt;b&gt;&amp;&quot;c'</p>\n");
    EXPECT_TRUE(Kit::P().impl->children.empty());
    EXPECT_TRUE(Kit::P("").impl->children.empty());
    EXPECT_EQ(Html(Kit::Tag("ul") << std::string("a<b")), "<ul>\na&lt;b</ul>\n");
}

TEST_F(ElementsTest, NoBlankIsSeenBehindAnElementInALineOfText) {
    EXPECT_EQ(Html(Kit::P("a") << Kit::Strong("b") << Kit::Code("c") << Text("d", true)),
              "<p>a<strong>b</strong><code>c</code>d</p>\n");
}

TEST_F(ElementsTest, AListIsWrittenAsTheHeaderShows) {
    Kit::Ul list;
    list << Kit::Li("a < b") << (Kit::Li() << Kit::Strong("mtu") << std::string(" 1500"));
    EXPECT_EQ(Html(list), "<ul>\n<li>a &lt; b</li>\n<li><strong>mtu</strong> 1500</li>\n</ul>\n");
}

TEST_F(ElementsTest, AGroupWritesItsChildrenAlone) {
    EXPECT_EQ(Html(Kit::Group() << Kit::P("a") << Kit::P("b")), "<p>a</p>\n<p>b</p>\n");
    EXPECT_EQ(Html(Kit::Group()), "");
}

TEST_F(ElementsTest, TheDoctypeIsALineOfItsOwnAndIsNotIndented) {
    Element const page = Kit::Group() << Kit::Doctype() << Kit::Html();
    EXPECT_EQ(Html(page), "<!DOCTYPE html>\n<html></html>\n");
    EXPECT_EQ(Indented(Kit::Doctype()), "<!DOCTYPE html>\n");
}

// What a browser shows of the element `tag` in `html`, out of the entities: the tags inside are
// left out, as is the line feed behind the opening tag (HTML Living Standard, 13.2.6.4.7).
std::string Seen(std::string html, std::string const& tag) {
    std::size_t const start = html.find("<" + tag);
    html = html.substr(start, html.rfind("</" + tag + ">") - start);
    html.erase(0, html.find('>') + 1);
    html.erase(0, html.compare(0, 1, "\n") == 0 ? 1 : 0);
    for (std::size_t at = html.find('<'); at != std::string::npos; at = html.find('<')) {
        std::size_t const end = html.find('>', at);
        html.erase(at, end == std::string::npos ? end : end + 1 - at);
    }
    for (auto const& entity : std::vector<std::pair<std::string, std::string>>{
             {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}) {
        std::size_t at = 0;
        while ((at = html.find(entity.first, at)) != std::string::npos) {
            html.replace(at++, entity.first.size(), entity.second);
        }
    }
    return html;
}

TEST_F(ElementsTest, PreformattedTextIsWrittenBehindALineFeedThatTheBrowserDrops) {
    EXPECT_EQ(Html(Kit::Pre("a\n  b")), "<pre>\na\n  b</pre>\n");
    EXPECT_EQ(Html(Kit::Pre("\na")), "<pre>\n\na</pre>\n");
    EXPECT_EQ(Html(Kit::Textarea()), "<textarea>\n</textarea>\n");
    EXPECT_EQ(Html(Kit::Textarea("<b>").SetAttr("name", "t")),
              "<textarea name=\"t\">\n&lt;b&gt;</textarea>\n");
    EXPECT_EQ(Indented(Div() << Kit::Pre("a\n b\n")),
              "        <div>\n          <pre>\na\n b\n</pre>\n        </div>\n");
}

TEST_F(ElementsTest, PreformattedTextIsSeenAsItIs) {
    for (std::string const text :
         {"", "a", " a ", "\n", "\n\n", "\na", "a\n", "  a\n\tb\n\n", " \n a", "<p>\n&amp;\"'"}) {
        for (Element const& around : std::vector<Element>{Div(), Kit::P(), Kit::Group()}) {
            around << Kit::Pre(text) << Kit::Textarea(text);
            for (std::string const& html : {Html(around), Indented(around)}) {
                EXPECT_EQ(Seen(html, "pre"), text) << html;
                EXPECT_EQ(Seen(html, "textarea"), text) << html;
            }
        }
    }
}

TEST_F(ElementsTest, LineEndsOfPreformattedTextAreThoseThatABrowserReads) {
    EXPECT_EQ(Html(Kit::Textarea("a\r\nb\rc\nd\r")), "<textarea>\na\nb\nc\nd\n</textarea>\n");
    EXPECT_EQ(Html(Kit::Pre("\r\n\r\r\n\n\r")), "<pre>\n\n\n\n\n\n</pre>\n");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(ElementsTest, ElementsAndLineEndsInPreformattedTextGainNoBlank) {
    Element const pre = Kit::Pre("a\n") << (Kit::Code() << Text(" b", true) << Endl()
                                                        << (Kit::Tag("i") << Text("c", true)))
                                        << Endl() << Text("d", true);
    for (std::string const& html : {Html(pre), Indented(pre), Indented(Div() << pre)}) {
        EXPECT_EQ(Seen(html, "pre"), "a\n b\nc\nd") << html;
    }
    Element const nested = Kit::Pre("x") << Endl() << Kit::Pre("y");
    EXPECT_EQ(Indented(nested), "        <pre>\nx\n<pre>\ny</pre></pre>\n");
}

TEST_F(ElementsTest, WhatStandsBehindPreformattedTextIsIndentedAgain) {
    EXPECT_EQ(Indented(Kit::Group() << Kit::Pre("a") << Br()),
              "        <pre>\na</pre>\n        <br >\n");
}

TEST_F(ElementsTest, AScriptEndsAtItsEndAlone) {
    struct Case {
        std::string code;
        std::string written;
    };
    for (Case const& row : std::vector<Case>{
             {"if (a < b && c > \"d\") { e('<p>'); }", "if (a < b && c > \"d\") { e('<p>'); }"},
             {"</script>", "\\u003C/script>"},
             {"a</SCRipt b", "a\\u003C/SCRipt b"},
             {"<!--<script>", "\\u003C!--<script>"},
             {"<</script></script", "<\\u003C/script>\\u003C/script"},
             {"</scrip></ script><! --", "</scrip></ script><! --"},
             {"</scrip", "</scrip"},
             {"<!-", "<!-"},
             {"</\x13"
              "cript\x0D!--",
              "</\x13"
              "cript\x0D!--"}}) {
        EXPECT_EQ(Html(Kit::Script(row.code)), "<script>\n" + row.written + "</script>\n");
    }
    EXPECT_EQ(Html(Kit::Script("</style>")), "<script>\n</style></script>\n");
}

TEST_F(ElementsTest, AStyleSheetEndsAtItsEndAlone) {
    EXPECT_EQ(Html(Kit::Style("a > b { content: \"&\" }")),
              "<style>\na > b { content: \"&\" }</style>\n");
    EXPECT_EQ(Html(Kit::Style("</style></STYLE ><style></script><!--")),
              "<style>\n<\\/style><\\/STYLE ><style></script><!--</style>\n");
}

TEST_F(ElementsTest, AScriptHasAttributesAndMayBeEmptyOrOnOneLine) {
    EXPECT_EQ(Html(Kit::Script("").SetAttr("src", "/a.js").SetEmptyAttr("defer")),
              "<script src=\"/a.js\" defer=\"\"></script>\n");
    EXPECT_EQ(Html(Kit::Script("a()").SetOneLine()), "<script>a()</script>\n");
    EXPECT_EQ(Html(Div().SetOneLine() << Kit::Style("a")), "<div><style>a</style></div>\n");
    Element const script = Kit::Script("a()");
    EXPECT_EQ(Html(script), Html(script));
}

TEST_F(ElementsTest, FocusOnAScriptIsReportedAsOnAnyElement) {
    Html(Kit::Script("a").SetFocus());
    EXPECT_EQ(
        Platform().Messages(),
        std::vector<std::string>{"error: Render: Element with focus needs to be inside a form"});
}

}  // namespace
