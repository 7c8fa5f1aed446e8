#include <csignal>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

using TitleTest = PageTest;
using TitleGoldenTest = PageTest;
using TableTest = PageTest;
using TableDeathTest = PageTest;

TEST_F(TitleTest, ATitleIsAHeadingInABlock) {
    for (std::string const& title : {std::string("Status"), std::string("a<b"), std::string()}) {
        Element const block = SmallTitle(title);
        EXPECT_EQ(block.impl->tag, "div");
        EXPECT_EQ(block.impl->attrs,
                  (std::map<std::string, std::string>{{"class", "breadcrumb allSmall"}}));
        ASSERT_EQ(block.impl->children.size(), 1U);
        ElementImpl const& heading = *block.impl->children[0];
        EXPECT_EQ(heading.tag, "h2");
        EXPECT_EQ(heading.attrs.size(), 0U);
        ASSERT_EQ(heading.children.size(), 1U);
        auto const& text = dynamic_cast<TextImpl const&>(*heading.children[0]);
        EXPECT_EQ(text.text, title);
        EXPECT_TRUE(text.filter);
    }
}

TEST_F(TitleGoldenTest, ATitleIsEscapedWhenItIsWritten) {
    ExpectGolden(Html(SmallTitle("a<b & c")), "title.html");
}

TEST_F(TableTest, RowsAreCountedAmongTheDirectChildrenByTheirExactTag) {
    Table table;
    EXPECT_EQ(table.impl->tag, "table");
    EXPECT_FALSE(table.impl->isLeaf);
    EXPECT_EQ(table.GetNumRows(), 0);
    table << Tag("tr") << Text("tr", true) << Tag("tr");
    EXPECT_EQ(table.GetNumRows(), 2);
    table << Tag("TR") << Tag("th") << Tag("trx") << Tag("t") << Null();
    EXPECT_EQ(table.GetNumRows(), 2);
    table << (Tag("tbody") << Tag("tr"));
    EXPECT_EQ(table.GetNumRows(), 2);
}

TEST_F(TableTest, AddRowAddsARowAndReturnsIt) {
    Table table;
    Element const row = table.AddRow();
    EXPECT_EQ(row.impl->tag, "tr");
    EXPECT_EQ(row.impl->parent, table.impl.get());
    EXPECT_EQ(table.impl->children.at(0), row.impl);
    EXPECT_EQ(table.GetNumRows(), 1);
}

TEST_F(TableTest, ACopyIsTheSameTable) {
    Table const table;
    Table copy = table;
    copy.AddRow();
    EXPECT_EQ(table.GetNumRows(), 1);
}

TEST_F(TableDeathTest, ATableThatRefersToNothingEndsTheProcess) {
    Table table;
    table.impl.reset();
    EXPECT_EXIT(table.GetNumRows(), ::testing::KilledBySignal(SIGABRT), "refers to nothing");
    EXPECT_EXIT(table.AddRow(), ::testing::KilledBySignal(SIGABRT), "refers to nothing");
}

TEST_F(TableDeathTest, AChildPointerThatIsEmptyEndsTheProcess) {
    Table const table;
    table.impl->children.resize(1);
    EXPECT_EXIT(table.GetNumRows(), ::testing::KilledBySignal(SIGABRT), "refers to nothing");
}

}  // namespace
