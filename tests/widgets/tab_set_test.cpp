#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::map<std::string, std::string> Attributes;
typedef std::vector<std::string> Texts;

Slot Tab(std::string const& text, bool isSelected = false, bool isUnselectable = false) {
    return {text, "/" + text, isSelected, isUnselectable};
}

// `count` tabs, `current` of which is selected.
std::vector<Slot> Tabs(std::size_t count, std::size_t current) {
    std::vector<Slot> slots;
    for (std::size_t i = 0; i < count; ++i) {
        slots.push_back(Tab("t" + std::to_string(i), i == current));
    }
    return slots;
}

// The joint images of a row, without their folder and ending.
Texts Images(Element const& tabSet) {
    Texts images;
    for (auto const& child : tabSet.impl->children.at(0)->children) {
        if (child->tag == "img" && child->attrs.at("class") == "middle") {
            EXPECT_EQ(child->attrs.size(), 2U) << "no size";
            std::string const src = child->attrs.at("src");
            std::string const folder = "/images/tab_set/Tab_";
            EXPECT_EQ(src.substr(0, folder.size()), folder);
            EXPECT_EQ(src.substr(src.size() - 4), ".gif");
            images.push_back(src.substr(folder.size(), src.size() - folder.size() - 4));
        }
    }
    return images;
}

// The classes of the tabs, in order.
Texts Classes(Element const& tabSet) {
    Texts classes;
    for (auto const& child : tabSet.impl->children.at(0)->children) {
        if (child->tag == "span") {
            classes.push_back(child->attrs.at("class"));
        }
    }
    return classes;
}

using TabSetTest = PageTest;
using TabSetGoldenTest = PageTest;

TEST_F(TabSetTest, ImagesAreChosenByTheTabsBesideThem) {
    struct Row {
        std::size_t count;
        std::size_t current;
        Texts images;
        Texts arabic;
    };
    for (Row const& row :
         std::vector<Row>{{1, 0, {"LTon", "RTon"}, {"LToff", "RToff"}},
                          {2, 0, {"LTon", "LTonRToff", "RToff"}, {"LToff", "LToffRTon", "RTon"}},
                          {2, 1, {"LToff", "LToffRTon", "RTon"}, {"LTon", "LTonRToff", "RToff"}},
                          {3,
                           0,
                           {"LTon", "LTonRToff", "LToffRToff", "RToff"},
                           {"LToff", "LToffRTon", "LTonRTon", "RTon"}},
                          {3,
                           1,
                           {"LToff", "LToffRTon", "LTonRToff", "RToff"},
                           {"LTon", "LTonRToff", "LToffRTon", "RTon"}},
                          {3,
                           2,
                           {"LToff", "LToffRToff", "LToffRTon", "RTon"},
                           {"LTon", "LTonRTon", "LTonRToff", "RToff"}}}) {
        for (char const* const language :
             {static_cast<char const*>(nullptr), "en", "AR", "ar-eg", "arz", ""}) {
            g_language = language;
            EXPECT_EQ(Images(MakeTabs(Tabs(row.count, row.current), Div())), row.images)
                << Cstr(language);
        }
        g_language = "ar";
        EXPECT_EQ(Images(MakeTabs(Tabs(row.count, row.current), Div())), row.arabic);
    }
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(TabSetTest, TheTreeIsTheRowOfTabsAboveTheContentArea) {
    Element const tabSet = MakeTabs(Tabs(2, 1), Null());
    EXPECT_EQ(tabSet.impl->tag, "div");
    EXPECT_EQ(tabSet.impl->attrs, (Attributes{{"id", "tab_set"}}));
    EXPECT_FALSE(tabSet.impl->oneLine);
    ASSERT_EQ(tabSet.impl->children.size(), 2U);

    ElementImpl const& row = *tabSet.impl->children[0];
    EXPECT_EQ(row.tag, "div");
    EXPECT_EQ(row.attrs, (Attributes{{"id", "tabs"}}));
    EXPECT_TRUE(row.oneLine);
    ASSERT_EQ(row.children.size(), 6U);
    EXPECT_EQ(row.children[0]->tag, "img");
    EXPECT_EQ(row.children[0]->attrs, (Attributes{{"class", "endCap"},
                                                  {"height", "24"},
                                                  {"src", "/images/tab_set/Tab_TopBG_R.gif"},
                                                  {"width", "4"}}));

    ElementImpl const& other = *row.children[2];
    EXPECT_EQ(other.attrs,
              (Attributes{{"class", "selectable"}, {"style", "top: 1px; padding-bottom: 4px"}}));
    ASSERT_EQ(other.children.size(), 1U);
    EXPECT_EQ(other.children[0]->tag, "a");
    EXPECT_EQ(other.children[0]->attrs, (Attributes{{"href", "/t0"}}));
    auto const& linkText = dynamic_cast<TextImpl const&>(*other.children[0]->children.at(0));
    EXPECT_EQ(linkText.text, "t0");
    EXPECT_TRUE(linkText.filter);

    ElementImpl const& current = *row.children[4];
    EXPECT_EQ(current.attrs,
              (Attributes{{"class", "selected"}, {"style", "top: 1px; padding-bottom: 4px"}}));
    ASSERT_EQ(current.children.size(), 1U);
    auto const& text = dynamic_cast<TextImpl const&>(*current.children[0]);
    EXPECT_EQ(text.text, "t1");
    EXPECT_TRUE(text.filter);

    ElementImpl const& area = *tabSet.impl->children[1];
    EXPECT_EQ(area.tag, "div");
    EXPECT_EQ(area.attrs, (Attributes{{"class", "content"}, {"style", "padding: 10px"}}));
    ASSERT_EQ(area.children.size(), 1U);
}

TEST_F(TabSetTest, TheContentIsTheCallersOwnElement) {
    Div const content;
    Element const tabSet = MakeTabs(Tabs(1, 0), content);
    EXPECT_EQ(tabSet.impl->children[1]->children.at(0), content.impl);
    EXPECT_EQ(content.impl->parent, tabSet.impl->children[1].get());
}

TEST_F(TabSetTest, ContentThatRefersToNothingLeavesTheAreaEmpty) {
    Element const tabSet = MakeTabs(Tabs(1, 0), Element());
    EXPECT_EQ(tabSet.impl->children.at(1)->children.size(), 0U);
}

TEST_F(TabSetTest, AnEmptyListIsReportedAndGivesANullElement) {
    Div const content;
    EXPECT_TRUE(MakeTabs({}, content).IsNull());
    EXPECT_EQ(DebugMessages(), (Texts{"LOGERROR: Empty slots[]!"}));
    EXPECT_EQ(content.impl->parent, nullptr);
    EXPECT_EQ(Platform().log.at(0).file, "src/widgets/tab_set.cpp");
}

TEST_F(TabSetTest, AListIsCheckedAndDrawnAllTheSame) {
    struct Row {
        std::vector<Slot> slots;
        Texts reports;
        std::size_t current;
    };
    std::string const second = "More than one slot selected!";
    std::string const none = "No slot selected!";
    for (Row const& row : std::vector<Row>{
             {{Tab("a")}, {none}, 0},
             {{Tab("a"), Tab("b")}, {none}, 0},
             {{Tab("a", true), Tab("b", true)}, {second}, 0},
             {{Tab("a"), Tab("b", true), Tab("c"), Tab("d", true), Tab("")}, {second}, 1},
             {{Tab("a", true), Tab("", true)}, {second}, 0},
             {{Tab("a"), Tab("b", true), Tab("")}, {"Slot 2 has no text!"}, 1},
             {{Tab(""), Tab("")}, {"Slot 0 has no text!", "Slot 1 has no text!", none}, 0},
             {{Tab("", true), Tab("b", true)}, {"Slot 0 has no text!", second}, 0},
             {{Tab(""), Tab("b", true), Tab(""), Tab("d", true), Tab("")},
              {"Slot 0 has no text!", "Slot 2 has no text!", second},
              1}}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        Element const tabSet = MakeTabs(row.slots, Div());
        Texts expected;
        for (std::string const& report : row.reports) {
            expected.push_back("LOGERROR: " + report);
        }
        EXPECT_EQ(DebugMessages(), expected);
        Texts classes(row.slots.size(), "selectable");
        classes[row.current] = "selected";
        EXPECT_EQ(Classes(tabSet), classes);
        EXPECT_EQ(Images(tabSet).size(), row.slots.size() + 1);
    }
}

TEST_F(TabSetTest, TheReportOfAnEmptyLabelKeepsItsFormat) {
    MakeTabs({Tab("", true)}, Div());
    EXPECT_EQ(Platform().log.at(0).format, "Slot %d has no text!");
}

TEST_F(TabSetTest, AnUnselectableTabIsALinkLikeAnyOther) {
    Element const tabSet = MakeTabs({Tab("a", true), Tab("b", false, true)}, Div());
    EXPECT_EQ(Classes(tabSet), (Texts{"selected", "selectable"}));
    EXPECT_NE(Html(tabSet).find("href=\"/b\""), std::string::npos);
    EXPECT_EQ(Classes(MakeTabs({Tab("a", true, true)}, Div())), (Texts{"selected"}));
}

TEST_F(TabSetGoldenTest, ThreeTabs) {
    ExpectGolden(Html(MakeTabs(Tabs(3, 1), Div() << Text("a<b", true))), "tab_set.html");
}

TEST_F(TabSetGoldenTest, ThreeTabsInArabic) {
    g_language = "ar";
    ExpectGolden(Html(MakeTabs(Tabs(3, 1), Div() << Text("a<b", true))), "tab_set_ar.html");
}

}  // namespace
