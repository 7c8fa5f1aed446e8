// The handles: what each makes, what a copy shares, and what the setters change.
#include <gtest/gtest.h>

#include <map>
#include <quillo>
#include <set>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::map<std::string, std::string> Attrs;
typedef std::set<std::string> Names;

class HandlesTest : public PageTest {};

struct Kind {
    Element element;
    std::type_info const& impl;
    char const* tag;
    bool isLeaf;
};

std::vector<Kind> Kinds() {
    return {{Div(), typeid(DivImpl), "div", false},
            {Span(), typeid(SpanImpl), "span", false},
            {A(), typeid(AImpl), "a", false},
            {H2(), typeid(H2Impl), "h2", false},
            {Img(), typeid(ImgImpl), "img", true},
            {Br(), typeid(BrImpl), "br", true},
            {Endl(), typeid(EndlImpl), "", true},
            {Text("t", true), typeid(TextImpl), "", true},
            {Null(), typeid(NullImpl), "", false},
            {Element(boost::shared_ptr<ElementImpl>(new ContainerImpl)), typeid(ContainerImpl), "",
             false},
            {Tag("tr"), typeid(ElementImpl), "tr", false},
            {Tag("hr", true), typeid(ElementImpl), "hr", true}};
}

TEST_F(HandlesTest, EveryKindStartsWithItsTagAndNothingElse) {
    for (Kind const& kind : Kinds()) {
        ElementImpl const& element = *kind.element.impl;
        SCOPED_TRACE(kind.impl.name());
        EXPECT_TRUE(typeid(element) == kind.impl);
        EXPECT_EQ(element.tag, kind.tag);
        EXPECT_EQ(element.isLeaf, kind.isLeaf);
        EXPECT_EQ(element.attrs, Attrs());
        EXPECT_EQ(element.emptyAttrs, Names());
        EXPECT_EQ(element.parent, nullptr);
        EXPECT_TRUE(element.children.empty());
        EXPECT_FALSE(element.oneLine);
        EXPECT_FALSE(element.hasFocus);
        EXPECT_EQ(kind.element.impl.use_count(), 1);
    }
}

TEST_F(HandlesTest, ATagKeepsItsBytesWhenItIsAString) {
    std::string const bytes("a\0b", 3);
    EXPECT_EQ(ElementImpl(bytes, false).tag, bytes);
    EXPECT_EQ(ElementImpl(bytes.c_str(), false).tag, "a");
}

TEST_F(HandlesTest, ATextKeepsItsBytesAndItsFlag) {
    std::string const bytes("a\0<\xff", 4);
    for (bool const filter : {true, false}) {
        Text const handle(bytes, filter);
        auto const& text = dynamic_cast<TextImpl const&>(*handle.impl);
        EXPECT_EQ(text.text, bytes);
        EXPECT_EQ(text.filter, filter);
    }
}

TEST_F(HandlesTest, ANonBreakingSpaceIsAnUnescapedText) {
    Text const space = Nbsp();
    auto const& text = dynamic_cast<TextImpl const&>(*space.impl);
    EXPECT_EQ(text.text, "&nbsp;");
    EXPECT_FALSE(text.filter);
}

TEST_F(HandlesTest, EachConstructionMakesAnElementOfItsOwn) {
    EXPECT_NE(Div().impl, Div().impl);
    EXPECT_NE(Nbsp().impl, Nbsp().impl);
}

TEST_F(HandlesTest, ADefaultHandleRefersToNothing) {
    EXPECT_FALSE(Element().impl);
}

TEST_F(HandlesTest, CopiesShareOneElement) {
    Div const first;
    Div copy = first;
    Element sliced = first;
    Element assigned;
    assigned = sliced;
    copy.SetAttr("id", "x");
    sliced << Br();
    EXPECT_EQ(assigned.impl, first.impl);
    EXPECT_EQ(first.impl->attrs, (Attrs{{"id", "x"}}));
    EXPECT_EQ(first.impl->children.size(), 1U);
    EXPECT_EQ(first.impl.use_count(), 4);
}

TEST_F(HandlesTest, AMovedFromHandleRefersToNothing) {
    Div first;
    ElementImpl const* const element = first.impl.get();
    Div second = std::move(first);
    EXPECT_FALSE(first.impl);
    Element third;
    third = std::move(second);
    EXPECT_FALSE(second.impl);
    EXPECT_EQ(third.impl.get(), element);
    EXPECT_EQ(third.impl.use_count(), 1);
}

TEST_F(HandlesTest, OnlyANullElementIsNull) {
    EXPECT_TRUE(Null().IsNull());
    EXPECT_TRUE(Element(Null()).IsNull());
    EXPECT_FALSE(Element().IsNull());
    for (Kind const& kind : Kinds()) {
        EXPECT_EQ(kind.element.IsNull(), kind.impl == typeid(NullImpl)) << kind.impl.name();
    }
}

TEST_F(HandlesTest, SettersReturnTheHandleTheyWereCalledOn) {
    Img image;
    EXPECT_EQ(&image.SetAttr("a", "b"), &image);
    EXPECT_EQ(&image.SetEmptyAttr("a"), &image);
    EXPECT_EQ(&image.AddStyle("a:1"), &image);
    EXPECT_EQ(&image.SetOneLine(), &image);
    EXPECT_EQ(&image.SetFocus(), &image);
    EXPECT_EQ(&image.Src("/a.gif"), &image);
}

TEST_F(HandlesTest, SetAttrReplacesAValueAndTakesTheNameFromTheEmptyOnes) {
    Div div;
    div.SetEmptyAttr("0").SetEmptyAttr("a").SetEmptyAttr("b").SetAttr("a", "1");
    EXPECT_EQ(div.impl->emptyAttrs, (Names{"0", "b"}));
    div.SetAttr("a", "2").SetAttr("A", "3").SetAttr("", "");
    EXPECT_EQ(div.impl->attrs, (Attrs{{"a", "2"}, {"A", "3"}, {"", ""}}));
}

TEST_F(HandlesTest, SetEmptyAttrLeavesAValueWhereItIs) {
    Div div;
    div.SetAttr("a", "1").SetEmptyAttr("a").SetEmptyAttr("a");
    EXPECT_EQ(div.impl->attrs, (Attrs{{"a", "1"}}));
    EXPECT_EQ(div.impl->emptyAttrs, Names{"a"});
}

TEST_F(HandlesTest, AddStyleJoinsDeclarationsWithASemicolonAndTrimsNothing) {
    struct Row {
        std::vector<std::string> styles;
        char const* value;
    };
    Row const rows[] = {{{"a:1"}, "a:1"},
                        {{"a:1", "b:2"}, "a:1;b:2"},
                        {{"b:2;", "a:1"}, "b:2;;a:1"},
                        {{"", "a:1"}, ";a:1"},
                        {{"a:1", ""}, "a:1;"},
                        {{" a:1 ", " b:2"}, " a:1 ; b:2"},
                        {{""}, ""}};
    for (Row const& row : rows) {
        Div div;
        for (std::string const& style : row.styles) {
            div.AddStyle(style);
        }
        EXPECT_EQ(div.impl->attrs, (Attrs{{"style", row.value}}));
    }
}

TEST_F(HandlesTest, AddStyleTakesTheNameFromTheEmptyAttributes) {
    Div fresh;
    fresh.SetEmptyAttr("style").SetEmptyAttr("styles").AddStyle("a:1");
    EXPECT_EQ(fresh.impl->attrs, (Attrs{{"style", "a:1"}}));
    EXPECT_EQ(fresh.impl->emptyAttrs, Names{"styles"});

    Div styled;
    styled.SetAttr("style", "a:1").SetEmptyAttr("style").AddStyle("b:2");
    EXPECT_EQ(styled.impl->attrs, (Attrs{{"style", "a:1;b:2"}}));
    EXPECT_EQ(styled.impl->emptyAttrs, Names());
}

TEST_F(HandlesTest, AFlagStaysSetAndTouchesNothingElse) {
    Div div;
    div.SetOneLine().SetOneLine();
    EXPECT_TRUE(div.impl->oneLine);
    EXPECT_FALSE(div.impl->hasFocus);
    Div other;
    other.SetFocus().SetFocus();
    EXPECT_TRUE(other.impl->hasFocus);
    EXPECT_FALSE(other.impl->oneLine);
}

TEST_F(HandlesTest, SrcSetsTheAddressAndTheClassMiddle) {
    Img image;
    image.Src("/a.gif");
    EXPECT_EQ(image.impl->attrs, (Attrs{{"class", "middle"}, {"src", "/a.gif"}}));

    Img classed;
    classed.SetAttr("class", "x").SetEmptyAttr("src");
    classed.SetEmptyAttr("class");
    classed.Src("/a.gif").Src("/b\".gif");
    EXPECT_EQ(classed.impl->attrs, (Attrs{{"class", "middle"}, {"src", "/b\".gif"}}));
    EXPECT_EQ(classed.impl->emptyAttrs, Names());
    classed.SetAttr("class", "x");
    EXPECT_EQ(classed.impl->attrs["class"], "x");
}

// Arguments that are pieces of the element they change are taken as if they had been copied first.

TEST_F(HandlesTest, AddStyleTakesItsOwnValue) {
    Div div;
    div.AddStyle("width:100px;height:200px;color:red");
    std::string const& value = div.impl->attrs["style"];
    div.AddStyle(value);
    EXPECT_EQ(value, "width:100px;height:200px;color:red;width:100px;height:200px;color:red");
}

TEST_F(HandlesTest, AddStyleTakesTheEmptyAttributeItRemoves) {
    Div div;
    div.SetEmptyAttr("style");
    div.AddStyle(*div.impl->emptyAttrs.begin());
    EXPECT_EQ(div.impl->attrs, (Attrs{{"style", "style"}}));
    EXPECT_EQ(div.impl->emptyAttrs, Names());
}

TEST_F(HandlesTest, SetAttrTakesItsNameAndItsValueFromTheEmptyAttributes) {
    std::string const name = "a-name-that-does-not-fit-into-a-short-string";
    Div div;
    div.SetEmptyAttr(name);
    std::string const& alias = *div.impl->emptyAttrs.begin();
    div.SetAttr(alias, alias);
    EXPECT_EQ(div.impl->attrs, (Attrs{{name, name}}));
    EXPECT_EQ(div.impl->emptyAttrs, Names());
}

TEST_F(HandlesTest, SetAttrTakesTheValueItReplaces) {
    Div div;
    div.SetAttr("a", "1");
    div.SetAttr("a", div.impl->attrs["a"]).SetAttr("b", div.impl->attrs["a"]);
    EXPECT_EQ(div.impl->attrs, (Attrs{{"a", "1"}, {"b", "1"}}));
}

TEST_F(HandlesTest, SetAttrTakesItsNameFromTheValueItReplaces) {
    Div div;
    div.SetAttr("checked", "checked").SetEmptyAttr("checked").SetEmptyAttr("new");
    div.SetAttr(div.impl->attrs["checked"], "new");
    EXPECT_EQ(div.impl->attrs, (Attrs{{"checked", "new"}}));
    EXPECT_EQ(div.impl->emptyAttrs, Names{"new"});
}

TEST_F(HandlesTest, SetEmptyAttrTakesANameItHas) {
    Div div;
    div.SetEmptyAttr("a");
    div.SetEmptyAttr(*div.impl->emptyAttrs.begin());
    EXPECT_EQ(div.impl->emptyAttrs, Names{"a"});
}

}  // namespace
