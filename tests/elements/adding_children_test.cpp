// What `parent << child` does, and what it refuses.
#include <glb.h>
#include <gtest/gtest.h>

#include <quillo>
#include <string>
#include <utility>
#include <vector>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

class AddingChildrenTest : public PageTest {};

typedef std::vector<boost::shared_ptr<ElementImpl>> Children;

// The error that adding `child` to `parent` ends in.
Glb::Error Refusal(Element const& parent, Element const& child) {
    try {
        parent << child;
    } catch (Glb::Error const& error) {
        return error;
    }
    return Glb::Error(-1, "", "not refused");
}

TEST_F(AddingChildrenTest, ChildrenStandInTheOrderTheyWereAdded) {
    Div const div;
    Text const text("a", true);
    Br const lineBreak;
    Null const null;
    EXPECT_EQ(&(div << text << lineBreak << null), &div);
    EXPECT_EQ(div.impl->children, (Children{text.impl, lineBreak.impl, null.impl}));
    for (auto const& child : div.impl->children) {
        EXPECT_EQ(child->parent, div.impl.get());
    }
    EXPECT_EQ(div.impl->parent, nullptr);
}

TEST_F(AddingChildrenTest, TheParentSharesTheChild) {
    Div div;
    Br const lineBreak;
    div << lineBreak;
    EXPECT_EQ(lineBreak.impl.use_count(), 2);
    EXPECT_EQ(div.impl.use_count(), 1) << "the link from child to parent owns nothing";
}

TEST_F(AddingChildrenTest, AChildAddedThroughACopyIsSeenThroughEveryHandle) {
    Div const first;
    Div const copy = first;
    copy << Br();
    EXPECT_EQ(Html(first), "<div>\n<br >\n</div>\n");
}

TEST_F(AddingChildrenTest, ATemporaryGivesItsPointerToTheParent) {
    Div const div;
    Br lineBreak;
    ElementImpl* const element = lineBreak.impl.get();
    EXPECT_EQ(&(div << std::move(lineBreak)), &div);
    EXPECT_EQ(lineBreak.impl, nullptr);
    ASSERT_EQ(div.impl->children.size(), 1U);
    EXPECT_EQ(div.impl->children[0].get(), element);
    EXPECT_EQ(div.impl->children[0].use_count(), 1);
    EXPECT_EQ(element->parent, div.impl.get());
}

TEST_F(AddingChildrenTest, ATemporaryThatALeafRefusesKeepsItsElement) {
    Br const leaf;
    Text text("a", true);
    EXPECT_THROW(leaf << std::move(text), Glb::Error);
    ASSERT_NE(text.impl, nullptr);
    EXPECT_EQ(text.impl->parent, nullptr);
}

TEST_F(AddingChildrenTest, AnEmptyTemporaryIsIgnored) {
    Div const div;
    div << Element() << Br();
    EXPECT_EQ(Html(div), "<div>\n<br >\n</div>\n");
    EXPECT_NO_THROW(Br() << Element());
    EXPECT_NO_THROW(Element() << Element());
}

TEST_F(AddingChildrenTest, ATemporaryTakesChildren) {
    EXPECT_EQ(Html(Span() << (A() << Text("x", true)) << Br()),
              "<span>\n<a>\nx</a>\n<br >\n</span>\n");
}

TEST_F(AddingChildrenTest, ANullElementTakesChildren) {
    Null const null;
    null << Div() << Br();
    EXPECT_EQ(null.impl->children.size(), 2U);
    EXPECT_EQ(null.impl->children[0]->parent, null.impl.get());
}

TEST_F(AddingChildrenTest, AnEmptyChildIsIgnoredBeforeAnythingElseIsLookedAt) {
    Div const div;
    div << Br();
    Br const leaf;
    Element const nothing;
    EXPECT_EQ(&(div << Element()), &div);
    EXPECT_EQ(&(leaf << Element()), &leaf);
    EXPECT_EQ(&(nothing << Element()), &nothing);
    EXPECT_EQ(div.impl->children.size(), 1U);
    EXPECT_TRUE(leaf.impl->children.empty());
    EXPECT_FALSE(nothing.impl);
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(AddingChildrenTest, OneElementMayStandTwiceInAParent) {
    Div const div;
    Br const lineBreak;
    div << lineBreak << lineBreak;
    EXPECT_EQ(div.impl->children, (Children{lineBreak.impl, lineBreak.impl}));
    EXPECT_EQ(lineBreak.impl.use_count(), 3);
    EXPECT_EQ(Html(div), "<div>\n<br >\n<br >\n</div>\n");
}

TEST_F(AddingChildrenTest, AnElementUnderTwoParentsBelongsToTheLast) {
    Div const first;
    Span const second;
    Br const lineBreak;
    first << lineBreak;
    second << lineBreak;
    EXPECT_EQ(lineBreak.impl->parent, second.impl.get());
    first << lineBreak;
    EXPECT_EQ(lineBreak.impl->parent, first.impl.get());
    EXPECT_EQ(Html(second), "<span>\n<br >\n</span>\n");
}

TEST_F(AddingChildrenTest, ALeafRefusesAChildWithThePlatformsError) {
    struct Row {
        Element leaf;
        char const* message;
    };
    Row const rows[] = {{Br(), "Tried to add child to <br> item"},
                        {Img(), "Tried to add child to <img> item"},
                        {Text("a", true), "Tried to add child to <> item"},
                        {Endl(), "Tried to add child to <> item"},
                        {Tag("hr", true), "Tried to add child to <hr> item"}};
    for (Row const& row : rows) {
        SCOPED_TRACE(row.message);
        Platform() = RecordingPlatform();
        Glb::Error const error = Refusal(row.leaf, Text("x", true));
        EXPECT_EQ(error.message(), row.message);
        EXPECT_STREQ(error.file(), "src/elements/leaf_check.hpp");
        EXPECT_GT(error.line(), 0);
        EXPECT_EQ(Platform().Trace(), std::string("ThrowError ") + row.message + "\n");
    }
}

TEST_F(AddingChildrenTest, ARefusedChildChangesNeitherElement) {
    Br const leaf;
    Div const owner;
    Span const child;
    owner << child;
    Refusal(leaf, child);
    EXPECT_TRUE(leaf.impl->children.empty());
    EXPECT_EQ(child.impl->parent, owner.impl.get());
    EXPECT_EQ(child.impl.use_count(), 2);
    EXPECT_EQ(debugMsgs.impl->children.size(), 0U) << "the error is the whole report";
}

TEST_F(AddingChildrenTest, ARefusalStandsWhenThePlatformsErrorReturns) {
    Platform().throwErrorReturns = true;
    Br const leaf;
    Glb::Error const error = Refusal(leaf, Div());
    EXPECT_EQ(error.line(), 0);
    EXPECT_EQ(error.file(), nullptr);
    EXPECT_EQ(error.message(), "");
    EXPECT_EQ(Platform().Trace(), "ThrowError Tried to add child to <br> item\n");
    EXPECT_TRUE(leaf.impl->children.empty());
}

TEST_F(AddingChildrenTest, AnElementThatIsMadeALeafRefusesFromThenOn) {
    Div const div;
    div << Br();
    div.impl->isLeaf = true;
    EXPECT_EQ(Refusal(div, Br()).message(), "Tried to add child to <div> item");
    EXPECT_EQ(div.impl->children.size(), 1U);
}

}  // namespace
