#include <quillo_kit/accessibility.hpp>

#include <csignal>

#include "support/page_test.hpp"
#include "support/small_stack.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace {

class AccessibilityTest : public PageTest {
protected:
    static std::string Accessible(Element const& tree) {
        MakeAccessible(tree, "Pages & \"more\"");
        return Html(tree);
    }
};

TEST_F(AccessibilityTest, AnImageWithoutATextIsDecoration) {
    EXPECT_EQ(Accessible(Div() << (Span() << Img())),
              "<div>\n<span>\n<img alt=\"\" >\n</span>\n</div>\n");
}

TEST_F(AccessibilityTest, AnImageKeepsItsText) {
    EXPECT_EQ(Accessible(Img().SetAttr("alt", "a lamp")), "<img alt=\"a lamp\" >\n");
    EXPECT_EQ(Accessible(Img().SetEmptyAttr("alt")), "<img alt=\"\" >\n");
}

TEST_F(AccessibilityTest, ANavigationBarIsALandmarkWithANameAndItsSelectedItemIsCurrent) {
    Element const bar =
        MakeNavBar({{"a", "/a", false, false}, {"b", "/b", true, false}, {"c", "/c", true, true}});
    std::string const after = Accessible(bar);
    EXPECT_NE(after.find("<div aria-label=\"Pages &amp; &quot;more&quot;\" id=\"nav_bar\" "
                         "role=\"navigation\">"),
              std::string::npos)
        << after;
    EXPECT_NE(after.find("<span aria-current=\"page\" class=\"selected\""), std::string::npos);
    EXPECT_EQ(after.find("aria-current"), after.rfind("aria-current"));
}

TEST_F(AccessibilityTest, TheFirstItemOfABarCanBeTheCurrentOne) {
    EXPECT_NE(Accessible(MakeNavBar({{"a", "/a", true, false}}))
                  .find("<span aria-current=\"page\" class=\"selected first\""),
              std::string::npos);
}

TEST_F(AccessibilityTest, TheSelectedTabIsCurrentAndTheContentIsLeftAlone) {
    std::string const page =
        Accessible(MakeTabs({{"a", "/a", true, false}, {"b", "/b", false, false}},
                            Span().SetAttr("class", "selected")));
    EXPECT_NE(page.find("<span aria-current=\"page\" class=\"selected\" style="),
              std::string::npos);
    EXPECT_NE(page.find("<span class=\"selected\"></span>"), std::string::npos) << page;
    EXPECT_EQ(page.find("role="), std::string::npos);
}

TEST_F(AccessibilityTest, WhatAPageHasSetItselfStays) {
    Div bar;
    bar.SetAttr("id", "nav_bar").SetAttr("role", "menu").SetAttr("aria-label", "x");
    bar << Span().SetAttr("class", "selected").SetAttr("aria-current", "step");
    EXPECT_EQ(Accessible(bar),
              "<div aria-label=\"x\" id=\"nav_bar\" role=\"menu\">\n"
              "<span aria-current=\"step\" class=\"selected\"></span>\n</div>\n");
}

TEST_F(AccessibilityTest, AClassThatOnlyBeginsLikeTheCurrentOneIsAnother) {
    Div bar;
    bar.SetAttr("id", "nav_bar");
    bar << Span().SetAttr("class", "selectedness");
    EXPECT_EQ(Accessible(bar).find("aria-current"), std::string::npos);
}

TEST_F(AccessibilityTest, ATreeOfAMillionLevelsIsDescribedToItsEndOnASmallStack) {
    Div root;
    root.SetAttr("id", "nav_bar");
    Element parent = root;
    for (int level = 0; level < 1000000; ++level) {
        Div const child;
        parent << child;
        parent = child;
    }
    Img const deepest;
    parent << (Span().SetAttr("class", "selected") << deepest);
    RunOnSmallStack([&] { MakeAccessible(root, "Pages"); });
    EXPECT_EQ(deepest.impl->attrs.at("alt"), "");
    EXPECT_EQ(deepest.impl->parent->attrs.at("aria-current"), "page");
}

TEST_F(AccessibilityTest, ACombOfAHundredThousandLevelsIsDescribedOnASmallStack) {
    Div const root;
    Element parent = root;
    std::vector<Element> teeth;
    for (int level = 0; level < 100000; ++level) {
        Div const child;
        teeth.push_back(Img());
        parent << teeth.back() << child;
        parent = child;
    }
    RunOnSmallStack([&] { MakeAccessible(root, "Pages"); });
    for (Element const& tooth : teeth) {
        ASSERT_EQ(tooth.impl->attrs.count("alt"), 1U);
    }
}

TEST_F(AccessibilityTest, AWidgetEndsWhereItsElementEnds) {
    Div bar;
    bar.SetAttr("id", "nav_bar") << Span();
    Span outside;
    outside.SetAttr("class", "selected");
    EXPECT_EQ(Accessible(Div() << outside << bar << outside).find("aria-current"),
              std::string::npos);
}

TEST_F(AccessibilityTest, ASecondPassAddsNothing) {
    Element const page = Div() << MakeNavBar({{"a", "/a", true, false}}) << Img();
    std::string const once = Accessible(page);
    EXPECT_EQ(Accessible(page), once);
    EXPECT_NE(once.find("aria-current"), std::string::npos);
}

using AccessibilityDeathTest = AccessibilityTest;

TEST_F(AccessibilityDeathTest, AHandleOrAChildThatRefersToNothingEndsTheProcess) {
    EXPECT_EXIT(MakeAccessible(Element(), "x"), ::testing::KilledBySignal(SIGABRT),
                "refers to nothing");
    Div const parent;
    parent.impl->children.resize(1);
    EXPECT_EXIT(MakeAccessible(parent, "x"), ::testing::KilledBySignal(SIGABRT),
                "refers to nothing");
}

}  // namespace
