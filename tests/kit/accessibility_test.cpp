#include <quillo_kit/accessibility.hpp>

#include "support/page_test.hpp"

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

}  // namespace
