// The stack that a level of a tree takes while it is written.
#include <cstdint>
#include <sstream>

#include "support/page_test.hpp"
#include "support/small_stack.hpp"

using namespace Quillo;

#if defined(__x86_64__) && defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
#define QUILLO_STACK_IS_PROMISED 1
#else
#define QUILLO_STACK_IS_PROMISED 0
#endif

namespace {

constexpr long promisedBytes = 160;

// Notes where the stack is when it is written.
struct Probe : ElementImpl {
    Probe() : ElementImpl("", true) {}
    void Render(Renderer&, int) const override {
        address = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    }
    mutable std::uintptr_t address = 0;
};

// `kind()` in itself, `levels` times, around `innermost`.
template <class Kind>
Element Nested(Kind kind, int levels, Element const& innermost) {
    Element tree = innermost;
    for (int level = 0; level < levels; ++level) {
        tree = kind() << tree;
    }
    return tree;
}

template <class Kind>
std::uintptr_t AddressBelow(Kind kind, int levels) {
    boost::shared_ptr<Probe> const probe(new Probe);
    Html(Nested(kind, levels, Element(probe)));
    return probe->address;
}

template <class Kind>
long BytesALevel(Kind kind) {
    return static_cast<long>(AddressBelow(kind, 100) - AddressBelow(kind, 300)) / 200;
}

Element Plain() {
    return Div();
}
Element OneLine() {
    return Div().SetOneLine().SetAttr("class", "c");
}
Element Container() {
    return Element(boost::shared_ptr<ElementImpl>(new ContainerImpl));
}

class StackTest : public PageTest {};

TEST_F(StackTest, ALevelTakesWhatTheHeaderPromises) {
    for (auto const kind : {Plain, OneLine, Container}) {
        long const bytes = BytesALevel(kind);
        std::printf("%ld bytes of stack a level\n", bytes);
        EXPECT_GT(bytes, 0);
        if (QUILLO_STACK_IS_PROMISED) {
            EXPECT_LE(bytes, promisedBytes);
        }
    }
}

TEST_F(StackTest, ATreeOf700LevelsIsWrittenOnAStackOf128KiB) {
    if (!QUILLO_STACK_IS_PROMISED) {
        GTEST_SKIP() << "promised for x86-64 in a release build";
    }
    Element const tree = Nested(Plain, 700, Text("deep", true));
    std::string html;
    RunOnSmallStack([&] { html = Html(tree); });
    std::string expected;
    for (int level = 0; level < 700; ++level) {
        expected += "<div>\n";
    }
    expected += "deep";
    for (int level = 0; level < 700; ++level) {
        expected += "</div>\n";
    }
    EXPECT_EQ(html, expected);
}

}  // namespace
