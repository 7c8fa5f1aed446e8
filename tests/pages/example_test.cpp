#include "gallery/example.hpp"

#include <stdexcept>

#include "sample_page_test.hpp"

using namespace Quillo;

namespace {

std::vector<Pages::Example> AllExamples() {
    std::vector<Pages::Example> all;
    for (Pages::ExampleGroup const& group :
         {Pages::NavBarExamples(), Pages::TabSetExamples(), Pages::TitleAndTableExamples(),
          Pages::TextExamples(), Pages::FormExamples()}) {
        all.insert(all.end(), group.examples.begin(), group.examples.end());
    }
    return all;
}

TEST(SourceOfTest, IsTheFunctionOfThatNameFromItsFirstLineToItsLast) {
    std::string const sources =
        "namespace {\n\nElement Ab() {\n    return {};\n}\n\nElement A() {\n    if (x) {\n    }\n"
        "    return y;\n}\n\n}  // namespace\n";
    EXPECT_EQ(Pages::SourceOf("A", sources),
              "Element A() {\n    if (x) {\n    }\n    return y;\n}");
    EXPECT_EQ(Pages::SourceOf("Ab", sources), "Element Ab() {\n    return {};\n}");
}

TEST(SourceOfTest, AFunctionThatIsNotThereIsAnErrorThatNamesIt) {
    for (char const* const sources :
         {"", "\nElement B() {\n}\n", "\nElement A() {\n", "A() {\n}\n"}) {
        try {
            Pages::SourceOf("A", sources);
            ADD_FAILURE() << sources;
        } catch (std::logic_error const& error) {
            EXPECT_NE(std::string(error.what()).find("'Element A()'"), std::string::npos);
        }
    }
}

TEST(SourceOfTest, EveryExampleHasASourceThatNoOtherHas) {
    for (Pages::Example const& example : AllExamples()) {
        std::string const sources = Pages::exampleSources;
        std::string const first = "\nElement " + example.function + "() {\n";
        EXPECT_EQ(sources.find(first), sources.rfind(first)) << example.function;
        EXPECT_EQ(Pages::SourceOf(example.function, sources).substr(0, first.size() - 2),
                  first.substr(1, first.size() - 2));
    }
}

using ExampleTest = SamplePageTest;

TEST_F(ExampleTest, EachIdIsNumberedOnceInTheOrderOfThePage) {
    Element const tree = Div().SetAttr("id", "a")
                         << Div() << (Div().SetAttr("id", "b") << Span().SetAttr("id", "a"));
    int last = 4;
    Pages::NumberIds(tree, last);
    EXPECT_EQ(Html(tree),
              "<div id=\"a-5\">\n<div></div>\n"
              "<div id=\"b-6\">\n<span id=\"a-7\"></span>\n</div>\n</div>\n");
    EXPECT_EQ(last, 7);
}

// As the page's text has them: escaped.
TEST_F(ExampleTest, TheGalleryShowsEachExampleAndItsSource) {
    std::string const page = Written("widgets");
    for (Pages::Example const& example : AllExamples()) {
        EXPECT_NE(page.find(Filter(Pages::SourceOf(example.function, Pages::exampleSources))),
                  std::string::npos)
            << example.function;
    }
}

TEST_F(ExampleTest, TheGalleryShowsNavigationBarsWithEveryStateAtEitherEnd) {
    std::string const page = Written("widgets");
    for (char const* const first : {"Link", "Here", "Closed", "Both"}) {
        for (char const* const last : {"Link", "Here", "Closed", "Both"}) {
            bool isShown = false;
            for (std::size_t bar = page.find("id=\"nav_bar-"); bar != std::string::npos;
                 bar = page.find("id=\"nav_bar-", bar + 1)) {
                std::string const line = page.substr(bar, page.find('\n', bar) - bar);
                std::size_t const left = line.find(std::string(">") + first + "<");
                std::size_t const right = line.rfind(std::string(">") + last + "<");
                isShown = isShown || (left != std::string::npos && right != std::string::npos &&
                                      line.find(" first") < left && left < right &&
                                      line.find(" last") < right);
            }
            EXPECT_TRUE(isShown) << first << ", " << last;
        }
    }
}

TEST_F(ExampleTest, TheGalleryShowsNavigationBarsWithEveryStateBetweenOthers) {
    std::string const page = Written("widgets");
    std::string bars;
    for (std::size_t bar = page.find("id=\"nav_bar-"); bar != std::string::npos;
         bar = page.find("id=\"nav_bar-", bar + 1)) {
        bars += page.substr(bar, page.find('\n', bar) - bar);
    }
    for (std::string const state : {"selectable", "selected", "unselectable"}) {
        EXPECT_NE(bars.find("<span class=\"" + state + "\""), std::string::npos) << state;
    }
    // Selected and not to be chosen at once.
    EXPECT_NE(bars.find(">Both</span><span class=\"selectable last\""), std::string::npos);
}

}  // namespace
