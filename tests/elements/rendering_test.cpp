#include <csignal>
#include <locale>
#include <sstream>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

class RenderingTest : public PageTest {
protected:
    // The tree in debug mode.
    static std::string Indented(Element const& root, int level = 0) {
        isDebug = true;
        std::string const html = Html(root, level);
        isDebug = false;
        return html;
    }
};

using RenderingDeathTest = RenderingTest;
using RenderingGoldenTest = RenderingTest;

Element Container() {
    return Element(boost::shared_ptr<ElementImpl>(new ContainerImpl));
}

TEST_F(RenderingTest, EachKindIsWrittenInItsOwnWay) {
    struct Row {
        Element element;
        std::string html;
    };
    for (Row const& row : std::vector<Row>{{Div(), "<div></div>\n"},
                                           {Span(), "<span></span>\n"},
                                           {A(), "<a></a>\n"},
                                           {H2(), "<h2></h2>\n"},
                                           {Br(), "<br >\n"},
                                           {Img(), "<img >\n"},
                                           {Endl(), "\n"},
                                           {Null(), ""},
                                           {Null() << Div(), ""},
                                           {Container(), ""},
                                           {Text("a<b", true), "a&lt;b"},
                                           {Text("a<b", false), "a<b"},
                                           {Nbsp(), "&nbsp;"},
                                           {Tag(""), "<></>\n"},
                                           {Table(), "<table></table>\n"}}) {
        EXPECT_EQ(Html(row.element), row.html);
    }
}

TEST_F(RenderingTest, AttributesStandByNameAndEmptyOnesBehindThem) {
    EXPECT_EQ(Html(Img().Src("/a.gif")), "<img class=\"middle\" src=\"/a.gif\" >\n");
    EXPECT_EQ(Html(Span().SetEmptyAttr("align").SetAttr("title", "x")),
              "<span title=\"x\" align=\"\"></span>\n");
    EXPECT_EQ(Html(Div()
                       .SetAttr("b", "")
                       .SetAttr("a", "2")
                       .SetAttr("B", "1")
                       .SetEmptyAttr("z")
                       .SetEmptyAttr("c")),
              "<div B=\"1\" a=\"2\" b=\"\" c=\"\" z=\"\"></div>\n");
}

TEST_F(RenderingTest, ANameInBothIsWrittenTwice) {
    EXPECT_EQ(Html(Div().SetAttr("a", "1").SetEmptyAttr("a")), "<div a=\"1\" a=\"\"></div>\n");
}

TEST_F(RenderingTest, TagsNamesAndValuesAreNotEscaped) {
    EXPECT_EQ(Html(Tag("x<y").SetAttr("a\"", "\"<&\x01").SetEmptyAttr("&")),
              "<x<y a\"=\"\"<&\x01\" &=\"\"></x<y>\n");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(RenderingTest, TextSharesItsLineWithTheTagsBehindIt) {
    EXPECT_EQ(Html(Div() << Text("a<b", true) << Br()), "<div>\na&lt;b<br >\n</div>\n");
    EXPECT_EQ(Indented(Div() << Text("a", true) << Text("b", true) << Span()),
              "<div>\n  ab<span></span>\n</div>\n");
}

TEST_F(RenderingTest, DebugModeIndentsByTwoBlanksALevel) {
    Element const tree = Div() << (Div() << Br());
    EXPECT_EQ(Html(tree), "<div>\n<div>\n<br >\n</div>\n</div>\n");
    EXPECT_EQ(Indented(tree), "<div>\n  <div>\n    <br >\n  </div>\n</div>\n");
    EXPECT_EQ(Indented(Br(), 3), "      <br >\n");
    EXPECT_EQ(Indented(Text("x", true), 2), "    x");
}

TEST_F(RenderingTest, AOneLineElementIsWrittenOnOneLine) {
    Element const tree = Div().SetOneLine() << Img() << (Span() << Img()) << Text("t", true);
    EXPECT_EQ(Html(tree), "<div><img ><span><img ></span>t</div>\n");
    EXPECT_EQ(Indented(tree, 2), "    <div><img ><span><img ></span>t</div>\n");
    EXPECT_EQ(Indented(Div() << tree), "<div>\n  <div><img ><span><img ></span>t</div>\n</div>\n");
    EXPECT_EQ(Html(Br().SetOneLine()), "<br >\n");
}

TEST_F(RenderingTest, OneLineElementsNest) {
    EXPECT_EQ(
        Indented(Div() << (Div().SetOneLine() << (Div().SetOneLine() << Br()) << Br()) << Br()),
        "<div>\n  <div><div><br ></div><br ></div>\n  <br >\n</div>\n");
}

TEST_F(RenderingTest, AnEndlEndsTheLineInsideAOneLineElementToo) {
    EXPECT_EQ(Indented(Div().SetOneLine() << Br() << Endl() << Br() << Text("x", true), 1),
              "  <div><br >\n<br >x</div>\n");
    EXPECT_EQ(Indented(Div().SetOneLine() << Endl() << Text("x", true), 1),
              "  <div>\n    x</div>\n")
        << "text looks at the start of the line wherever it stands";
    EXPECT_EQ(Html(Div() << Endl() << Endl()), "<div>\n\n\n</div>\n");
}

TEST_F(RenderingTest, AContainerWritesItsChildrenAtItsOwnLevel) {
    EXPECT_EQ(Indented(Div() << (Container() << Br() << (Container() << Br()))),
              "<div>\n  <br >\n  <br >\n</div>\n");
    Element const container = Container();
    container.impl->oneLine = true;
    EXPECT_EQ(Html(container << Br() << Br()), "<br >\n<br >\n") << "it is no element of its own";
}

TEST_F(RenderingTest, ALeafsChildrenAreNotWritten) {
    Element const leaf = Br();
    leaf.impl->isLeaf = false;
    leaf << Div();
    leaf.impl->isLeaf = true;
    EXPECT_EQ(Html(leaf), "<br >\n");
}

TEST_F(RenderingTest, TextBelowAScriptIsNeverEscaped) {
    struct Row {
        std::string tag;
        std::string html;
    };
    for (Row const& row : {Row{"script", "a<b"}, Row{"SCRIPT", "a&lt;b"}, Row{"div", "a&lt;b"},
                           Row{"scripts", "a&lt;b"}, Row{"", "a&lt;b"}}) {
        Text const direct("a<b", true);
        Text const deep("a<b", true);
        Element const root = Tag(row.tag) << direct << (Span() << (Container() << deep));
        std::string const html = Html(root);
        EXPECT_EQ(Html(direct), row.html);
        EXPECT_EQ(Html(deep), row.html);
        EXPECT_EQ(html.find("a<b") != std::string::npos, row.html == "a<b");
    }
}

TEST_F(RenderingTest, TheLastParentDecidesWhetherTextIsInAScript) {
    Text const text("a<b", true);
    Element const script = Tag("script");
    Div const div;
    script << text;
    div << text;
    EXPECT_EQ(Html(script), "<script>\na&lt;b</script>\n");
    script << text;
    EXPECT_EQ(Html(div), "<div>\na<b</div>\n");
}

TEST_F(RenderingTest, UnfilteredTextMayHoldNulBytes) {
    EXPECT_EQ(Html(Text(std::string("a\0b", 3), false)), std::string("a\0b", 3));
    EXPECT_EQ(Html(Text(std::string("a\0b", 3), true)), "a");
}

TEST_F(RenderingTest, WritingChangesNoElement) {
    Element const tree = Div() << (Span().SetOneLine() << Text("x", true));
    EXPECT_EQ(Html(tree), Html(tree));
    EXPECT_FALSE(tree.impl->oneLine);
}

TEST_F(RenderingTest, AnElementThatStandsTwiceIsWrittenTwice) {
    Br const lineBreak;
    EXPECT_EQ(Html(Div() << lineBreak << lineBreak), "<div>\n<br >\n<br >\n</div>\n");
}

// An element of a page's own kind, which adds a sibling while it is written.
struct Growing : ElementImpl {
    Growing() : ElementImpl("", true) {}
    void Render(Renderer& r, int) const override {
        r << "grow";
        if (parent->children.size() < 4) {
            parent->children.push_back(boost::shared_ptr<ElementImpl>(new Growing));
            parent->children.back()->parent = parent;
        }
    }
};

TEST_F(RenderingTest, ChildrenAddedWhileTheirParentIsWrittenAreWrittenToo) {
    Div const div;
    div << Element(boost::shared_ptr<ElementImpl>(new Growing));
    EXPECT_EQ(Html(div), "<div>\ngrowgrowgrowgrow</div>\n");
    Element const container = Container();
    container << Element(boost::shared_ptr<ElementImpl>(new Growing));
    EXPECT_EQ(Html(container), "growgrowgrowgrow");
}

TEST_F(RenderingTest, TreesMayBeWrittenOneBehindTheOther) {
    std::ostringstream page;
    Renderer r(page);
    Text("x", true).impl->Render(r, 0);
    Div().impl->Render(r, 0);
    Div().impl->Render(r, 0);
    EXPECT_EQ(page.str(), "x<div></div>\n<div></div>\n");
    EXPECT_EQ(r.oneLineDepth, 0);
    EXPECT_TRUE(r.atLineStart);
}

TEST_F(RenderingDeathTest, AChildPointerThatIsEmptyEndsTheProcess) {
    for (Element const& parent : {Element(Div()), Container()}) {
        parent.impl->children.resize(1);
        EXPECT_EXIT(Html(parent), ::testing::KilledBySignal(SIGABRT), "refers to nothing");
    }
    debugMsgs.impl->children.resize(1);
    EXPECT_EXIT(Html(debugMsgs), ::testing::KilledBySignal(SIGABRT), "refers to nothing");
}

// A page with every kind of element, in both modes.
Element WholePage() {
    Div page;
    page.SetAttr("id", "page").SetEmptyAttr("hidden");
    page << SmallTitle("Fish & chips") << Text("loose <text>", true) << Br() << Nbsp() << Endl();
    page << (Div().SetOneLine() << Img().Src("/a.gif") << Text("one line", true));
    page << (Tag("script") << Text("if (a < b && c) { d(\"e\"); }", true) << Endl());
    page << (Tag("form").SetAttr("name", "login")
             << Tag("input", true).SetAttr("name", "user").SetFocus()
             << (Null() << Text("never", true)));
    page << (Container() << Span() << A().SetAttr("href", "/b"));
    return page;
}

TEST_F(RenderingGoldenTest, AWholePage) {
    ExpectGolden(Html(WholePage()), "whole_page.html");
}

TEST_F(RenderingGoldenTest, AWholePageInDebugMode) {
    ExpectGolden(Indented(WholePage()), "whole_page_debug.html");
}

TEST_F(RenderingTest, DebugModeChangesWhiteSpaceAlone) {
    std::string plain = Html(WholePage());
    std::string indented = Indented(WholePage());
    for (std::string* const text : {&plain, &indented}) {
        std::string lines;
        for (std::size_t i = 0; i < text->size(); ++i) {
            bool const isIndent = (*text)[i] == ' ' && (lines.empty() || lines.back() == '\n');
            lines += isIndent ? std::string() : std::string(1, (*text)[i]);
        }
        *text = lines;
    }
    EXPECT_EQ(plain, indented);
}

class Grouping : public std::numpunct<char> {
    std::string do_grouping() const override { return "\1"; }
    char do_thousands_sep() const override { return '.'; }
};

TEST_F(RenderingTest, AGlobalLocaleThatGroupsDigitsChangesNoNumber) {
    std::vector<Slot> const slots = {{"a", "/a", true, false}};
    std::string const navBar = Html(MakeNavBar(slots));
    Html(Tag("form"));
    std::string const line = DebugLines().at(0);
    debugMsgs = Div();
    std::locale const before = std::locale::global(std::locale(std::locale(), new Grouping));
    EXPECT_EQ(Html(MakeNavBar(slots)), navBar);
    Html(Tag("form"));
    EXPECT_EQ(DebugLines().at(0), line);
    std::locale::global(before);
}

}  // namespace
