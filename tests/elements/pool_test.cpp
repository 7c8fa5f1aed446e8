// What elements leave behind serves the next ones, within bounds and each thread for itself.
#include "elements/pool.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <thread>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

// What is in use, of all that operator new gave; all that it gave, and how large the last one was;
// and how many blocks it gives before it fails once.
long blocks;
long taken;
std::size_t lastSize;
long untilFailure = -1;

class PoolTest : public PageTest {
protected:
    // Runs `work` on a thread whose pool is open and empty.
    template <class Work>
    static void OnThread(Work const& work) {
        std::thread([&] {
            Div const first;
            work();
        }).join();
    }
};

Element Row(std::string const& text) {
    Element row = Div().SetAttr("class", text).SetAttr("id", "row");
    for (int i = 0; i < 6; ++i) {
        row << (Span().SetAttr("title", text) << Text("cell", true));
    }
    return row;
}

}  // namespace

// Not inlined: GCC 12 would find that a block of operator new is freed by std::free.
__attribute__((noinline)) void* operator new(std::size_t size) {
    void* const block = untilFailure-- == 0 ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++blocks;
    ++taken;
    lastSize = size;
    return block;
}

// The sanitizers and valgrind have one of their own, whose blocks are not for std::free.
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    try {
        return operator new(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

__attribute__((noinline)) void operator delete(void* block) noexcept {
    if (block != nullptr) {
        --blocks;
        std::free(block);
    }
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace {

TEST_F(PoolTest, TheNextPageTakesNoMoreMemory) {
    if (!QUILLO_POOL) {
        GTEST_SKIP() << "the library was built without a pool";
    }
    OnThread([] {
        Row("first");
        long const before = blocks;
        for (int i = 0; i < 100; ++i) {
            Element const row = Row("next " + std::to_string(i));
            EXPECT_LE(blocks, before + 2) << "the lists of the pool grow";
            EXPECT_EQ(row.impl->attrs["class"], "next " + std::to_string(i));
        }
        EXPECT_LE(blocks, before);
    });
}

TEST_F(PoolTest, AnElementFromThePoolIsLikeANewOne) {
    OnThread([] {
        { Element const old = Row("old").SetEmptyAttr("hidden").SetOneLine().SetFocus(); }
        Div const made;
        EXPECT_TRUE(made.impl->attrs.empty());
        EXPECT_TRUE(made.impl->emptyAttrs.empty());
        EXPECT_TRUE(made.impl->children.empty());
        EXPECT_EQ(made.impl->parent, nullptr);
        EXPECT_FALSE(made.impl->oneLine);
        EXPECT_FALSE(made.impl->hasFocus);
        EXPECT_EQ(Html(made), "<div></div>\n");
    });
}

TEST_F(PoolTest, AThreadGivesAllBackWhenItEnds) {
    long const before = blocks;
    for (int i = 0; i < 10; ++i) {
        OnThread([] {
            for (int row = 0; row < 50; ++row) {
                Row("text");
            }
        });
    }
    EXPECT_EQ(blocks, before);
}

TEST_F(PoolTest, AnElementMayDieOnAnotherThread) {
    long const before = blocks;
    {
        Element row;
        OnThread([&] { row = Row("made there"); });
        EXPECT_EQ(row.impl->attrs["class"], "made there");
        OnThread([&] { row = Element(); });
    }
    EXPECT_EQ(blocks, before);
}

// Longer texts, wider elements and more of them than a pool holds go back at once.
TEST_F(PoolTest, AThreadHoldsHalfAMegabyteAtMost) {
    OnThread([] {
        long const before = blocks;
        {
            std::vector<Element> rows;
            for (int i = 0; i < 2000; ++i) {
                rows.push_back(Row(std::string(1000, 'x')));
            }
            Div wide;
            for (Element const& row : rows) {
                wide << row;
            }
        }
        // Of the smallest blocks, of 32 bytes, half a megabyte has so many.
        EXPECT_LE(blocks - before, 512 * 1024 / 32);
        std::size_t const longTexts = 2000 * 8;
        EXPECT_LT(static_cast<std::size_t>(blocks - before), longTexts);
    });
}

TEST_F(PoolTest, WhatHasNoPlaceInAPoolIsMemoryLikeAnyOther) {
    void* const large = Pool::Take(100000);
    ASSERT_NE(large, nullptr);
    Pool::Give(large, 100000);

    struct Large : ElementImpl {
        Large() : ElementImpl("large", false) {}
        char room[10000] = {};
    };
    long const before = blocks;
    { Element const made(boost::shared_ptr<ElementImpl>(new Large)); }
    EXPECT_EQ(blocks, before);
}

// The nodes of the pool lie beside its blocks: a block of one size too many would be theirs.
TEST_F(PoolTest, EverySizeIsTakenAndGivenBackWhole) {
    long const before = blocks;
    OnThread([] {
        for (std::size_t size = 1; size < 1000; ++size) {
            Pool::Attributes attributes = {{"name", "value"}};
            Pool::Give(attributes);
            void* const block = Pool::Take(size);
            std::memset(block, 0xFF, size);
            Pool::Give(block, size);
            Pool::Set(attributes, "name", "next");
            EXPECT_EQ(attributes, (Pool::Attributes{{"name", "next"}}));
        }
    });
    EXPECT_EQ(blocks, before);
}

// It is made before the pool is opened.
TEST_F(PoolTest, AnElementMayOutliveThePoolOfItsThread) {
    long const before = blocks;
    std::thread([] {
        thread_local Element late;
        late = Row("late");
    }).join();
    EXPECT_EQ(blocks, before);
}

TEST_F(PoolTest, AnAttributeFromThePoolHasTextsOfItsOwn) {
    OnThread([] {
        Pool::Attributes old = {{"m", "old"}, {"z", "old"}, {"a", "old"}};
        Pool::Give(old);
        Pool::Attributes attributes;
        for (char const* const name : {"n", "b", "y", "n"}) {
            Pool::Set(attributes, name, std::string("new ") + name);
        }
        EXPECT_EQ(attributes, (Pool::Attributes{{"b", "new b"}, {"n", "new n"}, {"y", "new y"}}));
    });
}

// Whether it is a new one, one from the pool or one that there is already.
TEST_F(PoolTest, AnAttributeIsSetWhollyOrNotAtAll) {
    std::string const name(40, 'n');
    std::string const value(40, 'v');
    for (bool const isInPool : {false, true}) {
        for (bool const isPresent : {false, true}) {
            OnThread([&] {
                bool hasFailed = true;
                for (long n = 0; hasFailed; ++n) {
                    Pool::Attributes old = {{"old", "old"}};
                    if (isInPool) {
                        Pool::Give(old);
                    }
                    Pool::Attributes attributes;
                    if (isPresent) {
                        attributes[name] = "old";
                    }
                    Pool::Attributes const before = attributes;
                    hasFailed = false;
                    untilFailure = n;
                    try {
                        Pool::Set(attributes, name, value);
                    } catch (std::bad_alloc const&) {
                        hasFailed = true;
                    }
                    untilFailure = -1;
                    EXPECT_EQ(attributes, hasFailed ? before : (Pool::Attributes{{name, value}}));
                }
            });
        }
    }
}

#if QUILLO_POOL

constexpr long limit = 512L * 1024;

// How many of 20000 blocks an empty pool keeps.
long KeptBlocks(std::size_t size) {
    long const before = blocks;
    {
        std::vector<void*> all(20000);
        for (void*& block : all) {
            block = Pool::Take(size);
        }
        for (void* const block : all) {
            Pool::Give(block, size);
        }
    }
    return blocks - before;
}

TEST_F(PoolTest, BlocksComeInStepsOfAPointer) {
    for (long const size : {1, 31, 32, 33, 64, 65, 96}) {
        OnThread([=] {
            long const word = sizeof(void*);
            long const rounded = (size + word - 1) / word * word;
            long const kept = std::min(20000L, limit / rounded);
            EXPECT_EQ(KeptBlocks(static_cast<std::size_t>(size)), kept) << size;
        });
    }
}

TEST_F(PoolTest, ABlockIsAsLargeAsTheLargestThatItServesLater) {
    for (std::size_t size = 1; size <= 100; ++size) {
        OnThread([=] {
            void* const block = Pool::Take(size);
            std::size_t const room = lastSize;
            Pool::Give(block, size);
            std::size_t served = size;
            for (void* next = block; next == block; ++served) {
                next = Pool::Take(served + 1);
                Pool::Give(next, served + 1);
            }
            EXPECT_EQ(served - 1, room) << size;
        });
    }
}

TEST_F(PoolTest, HoldsHalfAMegabyteOfAttributes) {
    OnThread([] {
        long const before = blocks;
        {
            Pool::Attributes attributes;
            for (int i = 0; i < 10000; ++i) {
                attributes[std::to_string(i)] = "value";
            }
            Pool::Give(attributes);
        }
        std::size_t const node = sizeof(Pool::Attributes::node_type) +
                                 sizeof(Pool::Attributes::value_type) + 4 * sizeof(void*) +
                                 2 * std::string().capacity();
        EXPECT_EQ(blocks - before, limit / static_cast<long>(node) + 1);
    });
}

TEST_F(PoolTest, HoldsHalfAMegabyteOfLists) {
    OnThread([] {
        long const before = blocks;
        for (int i = 0; i < 10000; ++i) {
            Pool::Children children;
            children.reserve(12);
            Pool::Give(children);
        }
        std::size_t const list = sizeof(Pool::Children) + 12 * sizeof(Pool::Children::value_type);
        EXPECT_EQ(blocks - before, limit / static_cast<long>(list) + 1);
    });
}

TEST_F(PoolTest, AFullPoolKeepsNothingMore) {
    OnThread([] {
        EXPECT_EQ(KeptBlocks(32), limit / 32);
        long const before = blocks;
        {
            Pool::Attributes attributes = {{"name", "value"}};
            Pool::Give(attributes);
            Pool::Children children;
            children.reserve(1);
            Pool::Give(children);
        }
        EXPECT_EQ(blocks, before);
    });
}

// With their texts; a text of 15 bytes at most takes none of its own.
TEST_F(PoolTest, KeepsAttributesWithTextsOf128BytesAtMost) {
    std::size_t const room = 128 - std::string().capacity();
    OnThread([=] {
        long const before = blocks;
        {
            Pool::Attributes attributes = {{"name", std::string(room, 'x')}};
            Pool::Give(attributes);
            EXPECT_TRUE(attributes.empty());
        }
        EXPECT_EQ(blocks, before + 3) << "the node, its value and the pool's list";
        {
            Pool::Attributes attributes = {{"name", std::string(room + 1, 'x')}};
            Pool::Give(attributes);
        }
        {
            Pool::Attributes attributes = {{std::string(room + 1, 'x'), "value"}};
            Pool::Give(attributes);
        }
        EXPECT_EQ(blocks, before + 3);
    });
}

TEST_F(PoolTest, KeepsListsOf12ChildrenAtMostAndNoneWithoutRoom) {
    OnThread([] {
        for (std::size_t const size : {12U, 13U, 0U}) {
            Pool::Children children;
            children.reserve(size);
            Pool::Give(children);
        }
        Pool::Children next;
        Pool::Grow(next);
        EXPECT_EQ(next.capacity(), 12U);
        Pool::Children last;
        Pool::Grow(last);
        EXPECT_EQ(last.capacity(), 0U);
    });
}

TEST_F(PoolTest, AListGrowsFromOneChildToSix) {
    OnThread([] {
        Div parent;
        for (std::size_t const capacity : {1U, 6U, 6U, 6U, 6U, 6U, 12U}) {
            parent << Br();
            EXPECT_EQ(parent.impl->children.capacity(), capacity);
        }
    });
}

// More often than there is room for what would not be counted back.
TEST_F(PoolTest, TheSameMemoryServesAgainAndAgain) {
    OnThread([] {
        std::size_t const size = sizeof(TextImpl);
        long before = 0;
        for (int i = 0; i < 20000; ++i) {
            if (i == 1) {
                before = taken;
            }
            Pool::Give(Pool::Take(size), size);
            Pool::Attributes attributes;
            Pool::Set(attributes, "name", "value");
            Pool::Give(attributes);
            Pool::Children children;
            Pool::Grow(children);
            children.reserve(12);
            Pool::Give(children);
        }
        EXPECT_EQ(taken, before);
    });
}

TEST_F(PoolTest, AnElementLeavesItsMemoryToTheNextOne) {
    OnThread([] {
        { Element const page = Div() << (Span().SetAttr("class", "text") << Br()); }
        Br const child;
        long const before = taken;
        Element const next = Span().SetAttr("class", "text") << child;
        EXPECT_EQ(taken, before);
    });
}

#endif

// The thread opens its pool, fills it and builds from it; whichever allocation fails, no memory is
// lost.
TEST_F(PoolTest, APoolWithoutMemoryLosesNone) {
    long const before = blocks;
    bool hasFailed = true;
    for (long n = 0; hasFailed; ++n) {
        std::thread([&] {
            untilFailure = n;
            for (int i = 0; i < 3; ++i) {
                try {
                    Row("a text of more than fifteen bytes");
                } catch (std::bad_alloc const&) {
                    EXPECT_LT(untilFailure, 0);
                }
            }
            hasFailed = untilFailure < 0;
            untilFailure = -1;
            EXPECT_EQ(Html(Row("next")).substr(0, 11), "<div class=");
        }).join();
        ASSERT_EQ(blocks, before) << "allocation " << n;
    }
}

// Blocks of every size serve in the place of others of the same size alone.
TEST_F(PoolTest, AnElementOfMemoryFromElsewhereIsGivenBackAsWell) {
    struct Larger : ElementImpl {
        Larger() : ElementImpl("larger", false) {}
        void* room[1] = {};
    };
    long const before = blocks;
    OnThread([] {
        for (int i = 0; i < 100; ++i) {
            {
                Element const foreign(
                    boost::shared_ptr<ElementImpl>(::new ElementImpl("p", false)));
            }
            { Element const own(boost::shared_ptr<ElementImpl>(new Larger)); }
            { Element const silent(boost::shared_ptr<ElementImpl>(new (std::nothrow) DivImpl)); }
        }
    });
    EXPECT_EQ(blocks, before);
}

TEST_F(PoolTest, AnElementOfStricterAlignmentHasIt) {
    struct Wide : ElementImpl {
        Wide() : ElementImpl("wide", false) {}
        alignas(128) char room[128] = {};
    };
    for (int i = 0; i < 16; ++i) {
        boost::shared_ptr<Wide> const wide(new Wide);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wide.get()) % 128, 0U);
    }
}

TEST_F(PoolTest, AnElementMayBeMadeInAPlaceOfItsOwner) {
    alignas(DivImpl) char place[sizeof(DivImpl)];
    DivImpl* const made = new (place) DivImpl;
    EXPECT_EQ(static_cast<void*>(made), place);
    made->~DivImpl();
}

}  // namespace
