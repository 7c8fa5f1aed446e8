#include <locale>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::map<std::string, std::string> Attributes;

using NavBarTest = PageTest;
using NavBarGoldenTest = PageTest;

// The children of the bar's row: the left end, the items, the right end.
std::vector<boost::shared_ptr<ElementImpl>> RowOf(std::vector<Slot> const& slots) {
    Element const bar = MakeNavBar(slots);
    EXPECT_EQ(bar.impl->tag, "div");
    EXPECT_EQ(bar.impl->attrs, (Attributes{{"id", "nav_bar"}}));
    EXPECT_TRUE(bar.impl->oneLine);
    EXPECT_EQ(bar.impl->children.size(), 1U);
    ElementImpl const& row = *bar.impl->children.at(0);
    EXPECT_EQ(row.tag, "span");
    EXPECT_EQ(row.attrs, Attributes());
    EXPECT_EQ(row.children.size(), slots.size() + 2);
    return row.children;
}

Attributes LeftEnd(std::string const& state) {
    return {{"alt", ""},
            {"class", "middle"},
            {"height", "20"},
            {"src", "/images/widgets/nav_bar/left_" + state + ".gif"},
            {"width", "10"}};
}

Attributes RightEnd(std::string const& state) {
    return {{"alt", ""},
            {"class", "middle"},
            {"height", "20"},
            {"src", "/images/widgets/nav_bar/right_" + state + ".gif"},
            {"width", "8"}};
}

std::string Style(int padding) {
    std::string const pixels = std::to_string(padding) + "px;";
    return "padding-left: " + pixels + "padding-right: " + pixels;
}

Slot Selected(std::string const& text) {
    return {text, "/unused", true, false};
}
Slot Link(std::string const& text) {
    return {text, "/" + text, false, false};
}
Slot Unselectable(std::string const& text) {
    return {text, "/unused", false, true};
}
Slot Both(std::string const& text) {
    return {text, "/unused", true, true};
}

TEST_F(NavBarTest, AnEmptyListGivesTheTwoEndsAlone) {
    auto const row = RowOf({});
    EXPECT_EQ(row.at(0)->tag, "img");
    EXPECT_EQ(row[0]->attrs, LeftEnd("off"));
    EXPECT_EQ(row[1]->attrs, RightEnd("off"));
}

TEST_F(NavBarTest, StateAndPositionMakeTheClassAndTheEnds) {
    struct Case {
        std::vector<Slot> slots;
        std::vector<std::string> classes;
        std::string left;
        std::string right;
    };
    for (Case const& c : std::vector<Case>{
             {{Selected("a")}, {"selected first"}, "on", "on"},
             {{Link("a")}, {"selectable first"}, "off", "off"},
             {{Unselectable("a")}, {"unselectable first"}, "off", "off"},
             {{Both("a")}, {"unselectable first"}, "off", "off"},
             {{Selected("a"), Selected("b")}, {"selected first", "selected last"}, "on", "on"},
             {{Link("a"), Selected("b"), Link("c")},
              {"selectable first", "selected", "selectable last"},
              "off",
              "off"},
             {{Selected("a"), Link("b"), Unselectable("c")},
              {"selected first", "selectable", "unselectable last"},
              "on",
              "off"},
             {{Both("a"), Unselectable("b"), Selected("c")},
              {"unselectable first", "unselectable", "selected last"},
              "off",
              "on"}}) {
        auto const row = RowOf(c.slots);
        EXPECT_EQ(row.front()->attrs, LeftEnd(c.left));
        EXPECT_EQ(row.back()->attrs, RightEnd(c.right));
        for (std::size_t i = 0; i < c.classes.size(); ++i) {
            EXPECT_EQ(row[i + 1]->tag, "span");
            EXPECT_EQ(row[i + 1]->attrs.at("class"), c.classes[i]);
        }
    }
}

TEST_F(NavBarTest, ALinkCarriesTheStyleAndItsItemTheClassAlone) {
    auto const row = RowOf({Link("Settings")});
    EXPECT_EQ(row[1]->attrs, (Attributes{{"class", "selectable first"}}));
    ASSERT_EQ(row[1]->children.size(), 1U);
    ElementImpl const& link = *row[1]->children[0];
    EXPECT_EQ(link.tag, "a");
    EXPECT_EQ(link.attrs, (Attributes{{"href", "/Settings"}, {"style", Style(33)}}));
    ASSERT_EQ(link.children.size(), 1U);
    auto const& text = dynamic_cast<TextImpl const&>(*link.children[0]);
    EXPECT_EQ(text.text, "Settings");
    EXPECT_TRUE(text.filter);
}

TEST_F(NavBarTest, AnyOtherItemCarriesTheStyleItselfAndLeadsNowhere) {
    for (Slot const& slot : {Selected("Help"), Unselectable("Help"), Both("Help")}) {
        auto const row = RowOf({slot});
        EXPECT_EQ(row[1]->attrs.at("style"), Style(45));
        EXPECT_EQ(row[1]->attrs.size(), 2U);
        ASSERT_EQ(row[1]->children.size(), 1U);
        auto const& text = dynamic_cast<TextImpl const&>(*row[1]->children[0]);
        EXPECT_EQ(text.text, "Help");
        EXPECT_TRUE(text.filter);
        EXPECT_EQ(Html(MakeNavBar({slot})).find("/unused"), std::string::npos);
    }
}

TEST_F(NavBarTest, LabelsOfUpToFifteenBytesArePaddedToAboutOneWidth) {
    int const paddings[] = {57, 57, 51, 51, 45, 45, 39, 39, 33, 33, 27, 27, 21, 21, 15, 15, 9, 9};
    std::size_t length = 0;
    for (int const padding : paddings) {
        auto const row = RowOf({Selected(std::string(length, 'x'))});
        EXPECT_EQ(row[1]->attrs.at("style"), Style(padding)) << length;
        EXPECT_EQ(row[1]->children.size(), 1U) << "an empty label is a text element too";
        ++length;
    }
    EXPECT_EQ(RowOf({Selected(std::string(1000, 'x'))})[1]->attrs.at("style"), Style(9));
}

TEST_F(NavBarTest, ALabelIsMeasuredInBytes) {
    EXPECT_EQ(RowOf({Selected("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F\xC3\xA9")})[1]->attrs.at("style"),
              Style(27));
}

TEST_F(NavBarTest, ReportsNothingAndSharesNothing) {
    std::vector<Slot> slots = {Link("a")};
    Element const first = MakeNavBar(slots);
    Element const second = MakeNavBar(slots);
    std::string const html = Html(second);
    first.impl->children[0]->attrs["class"] = "changed";
    slots[0].text = "changed";
    EXPECT_EQ(Html(second), html);
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(NavBarGoldenTest, ABarOfEveryState) {
    ExpectGolden(
        Html(MakeNavBar({Selected("Home"), Link("Settings"), Link("R&D"), Unselectable("Help")})),
        "nav_bar.html");
}

}  // namespace
