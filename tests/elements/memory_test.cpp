// What an element takes of the heap: the figures of docs/size.md, for both targets.
#include <cstdlib>
#include <new>
#include <thread>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

struct Taken {
    int blocks = 0;
    std::size_t bytes = 0;
};

Taken taken;  // by one thread at a time

class MemoryTest : public PageTest {
protected:
    // What `make` takes and keeps: what it gives back is not counted. A thread of its own has
    // nothing in its pool, which its first element opens.
    template <class Make>
    static Taken TakenBy(Make const& make) {
        Taken result;
        std::thread([&] {
            Div const first;
            taken = Taken();
            auto const kept = make();
            result = taken;
        }).join();
        return result;
    }
};

}  // namespace

// Each block begins with its size, and keeps the alignment.
void* operator new(std::size_t size) {
    auto* const block =
        static_cast<std::max_align_t*>(std::malloc(sizeof(std::max_align_t) + size));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    ++taken.blocks;
    taken.bytes += size;
    return block + 1;
}

// The sanitizers and valgrind have one of their own, whose blocks do not begin with their size.
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    try {
        return operator new(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        auto* const block = static_cast<std::max_align_t*>(memory) - 1;
        --taken.blocks;
        taken.bytes -= *reinterpret_cast<std::size_t*>(block);
        std::free(block);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

#if defined __powerpc__ && !defined __powerpc64__
constexpr std::size_t emptyDiv = 116;
constexpr std::size_t divOfTwo = 244;
constexpr std::size_t shortText = 144;
#elif QUILLO_POOL
constexpr std::size_t emptyDiv = 216;
constexpr std::size_t divOfTwo = 408;
constexpr std::size_t shortText = 256;
#else
constexpr std::size_t emptyDiv = 208;
constexpr std::size_t divOfTwo = 400;
constexpr std::size_t shortText = 248;
#endif

TEST_F(MemoryTest, AnEmptyDivTakesTwoBlocks) {
    Taken const div = TakenBy([] { return Div(); });
    EXPECT_EQ(div.blocks, 2);
    EXPECT_EQ(div.bytes, emptyDiv);
}

TEST_F(MemoryTest, AnAttributeOfShortTextsTakesOneBlockMore) {
    Taken const div = TakenBy([] {
        Div made;
        made.SetAttr("id", "page").SetAttr("class", "content");
        return made;
    });
    EXPECT_EQ(div.blocks, 4);
    EXPECT_EQ(div.bytes, divOfTwo);
}

TEST_F(MemoryTest, AShortTextTakesTwoBlocks) {
    Taken const made = TakenBy([] { return Text("up & running", true); });
    EXPECT_EQ(made.blocks, 2);
    EXPECT_EQ(made.bytes, shortText);
}

}  // namespace
