// A handle that refers to nothing ends the process, in every build.
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <quillo>
#include <utility>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

void ExpectAbort(std::function<void()> const& operation) {
    EXPECT_EXIT(operation(), testing::KilledBySignal(SIGABRT),
                "an operation needs an element, and its handle refers to nothing");
}

// `parent` with a child that is no element.
Element WithHole(Element const& parent) {
    parent.impl->children.emplace_back();
    return parent;
}

TEST(NullHandleDeathTest, SettingAnAttributeAborts) {
    ExpectAbort([] { Element().SetAttr("a", "b"); });
}

TEST(NullHandleDeathTest, SettingAnEmptyAttributeAborts) {
    ExpectAbort([] { Element().SetEmptyAttr("a"); });
}

TEST(NullHandleDeathTest, AddingAStyleAborts) {
    ExpectAbort([] { Element().AddStyle("a:1"); });
}

TEST(NullHandleDeathTest, SettingOneLineAborts) {
    ExpectAbort([] { Element().SetOneLine(); });
}

TEST(NullHandleDeathTest, SettingTheFocusAborts) {
    ExpectAbort([] { Element().SetFocus(); });
}

TEST(NullHandleDeathTest, SettingTheAddressOfAnImageAborts) {
    Img image;
    image.impl.reset();
    ExpectAbort([&] { image.Src("/a.gif"); });
}

TEST(NullHandleDeathTest, AddingAChildAborts) {
    ExpectAbort([] { Element() << Br(); });
}

TEST(NullHandleDeathTest, AMovedFromHandleAborts) {
    Div moved;
    Div const owner = std::move(moved);
    ExpectAbort([&] { moved << Br(); });
}

TEST(NullHandleDeathTest, WritingAChildThatIsNoElementAborts) {
    ExpectAbort([] { Html(WithHole(Div())); });
}

TEST(NullHandleDeathTest, WritingAChildOfAContainerThatIsNoElementAborts) {
    Element const container(boost::shared_ptr<ElementImpl>(new ContainerImpl));
    ExpectAbort([&] { Html(WithHole(container)); });
}

TEST(NullHandleDeathTest, WritingADebugLineThatIsNoElementAborts) {
    ExpectAbort([] { Html(WithHole(debugMsgs)); });
}

TEST(NullHandleTest, AChildThatIsNoElementIsNoHarmToTakingTheTreeDown) {
    Br const survivor;
    Element parent = WithHole(Div());
    parent << survivor;
    parent = Element();
    EXPECT_EQ(survivor.impl->parent, nullptr);
}

}  // namespace
