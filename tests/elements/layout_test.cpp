// The layout that a device's own code is compiled against: the request record, and an element's
// fields and virtual operations.
#include <cstddef>
#include <cstdint>
#include <sstream>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

constexpr std::size_t word = sizeof(void*);

std::ptrdiff_t OffsetOf(ElementImpl const& element, void const* field) {
    return static_cast<char const*>(field) - reinterpret_cast<char const*>(&element);
}

class LayoutTest : public PageTest {};

TEST_F(LayoutTest, TheRequestRecordIsALanguageTwoPointersAndEightWords) {
    EXPECT_EQ(offsetof(ZOV_AppData, preferredLang), 0U);
    EXPECT_EQ(offsetof(ZOV_AppData, uriArgs), 64U);
    EXPECT_EQ(offsetof(ZOV_AppData, out), 64 + word);
    EXPECT_EQ(offsetof(ZOV_AppData, loaState), 64 + 2 * word);
    EXPECT_EQ(sizeof(ZOV_AppData::loaState), 8 * word);
    EXPECT_EQ(sizeof(ZOV_AppData), 64 + 10 * word);
}

#if defined __powerpc__ && !defined __powerpc64__
TEST_F(LayoutTest, OnTheDeviceTheStateIsEight32BitWordsAndTheSeventhIsTheTextPointer) {
    EXPECT_EQ(sizeof(ZOV_AppData), 104U);
    EXPECT_EQ(offsetof(ZOV_AppData, loaState), 72U);
    ZOV_AppData app = {};
    EXPECT_EQ(sizeof app.loaState[6], 4U);
    EXPECT_EQ(reinterpret_cast<char*>(&app.loaState[6]) - reinterpret_cast<char*>(&app), 96);
}
#endif

TEST_F(LayoutTest, AHandleIsItsVirtualTableAndOneSharedPointer) {
    Element const element;
    EXPECT_EQ(sizeof element, 3 * word);
    EXPECT_EQ(
        reinterpret_cast<char const*>(&element.impl) - reinterpret_cast<char const*>(&element),
        static_cast<std::ptrdiff_t>(word));
    EXPECT_EQ(sizeof(Div), sizeof(Element));
    EXPECT_EQ(sizeof(Text), sizeof(Element));
    EXPECT_EQ(sizeof(Table), sizeof(Element));
}

TEST_F(LayoutTest, AnElementsFieldsStandInTheirOrderBehindItsVirtualTable) {
    ElementImpl const element("p", false);
    std::ptrdiff_t const offsets[] = {OffsetOf(element, &element.tag),
                                      OffsetOf(element, &element.isLeaf),
                                      OffsetOf(element, &element.attrs),
                                      OffsetOf(element, &element.emptyAttrs),
                                      OffsetOf(element, &element.parent),
                                      OffsetOf(element, &element.children),
                                      OffsetOf(element, &element.oneLine),
                                      OffsetOf(element, &element.hasFocus),
                                      static_cast<std::ptrdiff_t>(sizeof element)};
    EXPECT_EQ(offsets[0], static_cast<std::ptrdiff_t>(word));
    for (std::size_t i = 1; i < sizeof offsets / sizeof offsets[0]; ++i) {
        EXPECT_LT(offsets[i - 1], offsets[i]) << i;
    }
    EXPECT_EQ(offsets[7] - offsets[6], 1);
}

// The destructor takes two slots: that of an object, and that of one on the heap.
TEST_F(LayoutTest, RenderIsTheVirtualOperationBehindTheDestructor) {
    typedef void RenderFunction(ElementImpl const*, Renderer&, int);
    Div const div;
    auto const slots = *reinterpret_cast<RenderFunction* const* const*>(div.impl.get());
    std::ostringstream page;
    Renderer renderer(page);
    slots[2](div.impl.get(), renderer, 0);
    EXPECT_EQ(page.str(), "<div></div>\n");
}

TEST_F(LayoutTest, ARendererIsAPlainRecord) {
    std::ostringstream page;
    Renderer const renderer(page);
    char const* const start = reinterpret_cast<char const*>(&renderer);
    EXPECT_EQ(reinterpret_cast<char const*>(&renderer.out), start);
    EXPECT_EQ(reinterpret_cast<char const*>(&renderer.atLineStart) - start,
              static_cast<std::ptrdiff_t>(word));
    EXPECT_LT(&renderer.oneLineDepth, static_cast<void const*>(&renderer.formName));
    EXPECT_LT(&renderer.formName, &renderer.focusRef);
}

}  // namespace
