// What elements leave behind serves the next ones, within bounds and each thread for itself.
#include "elements/pool.hpp"

#include <cstdlib>
#include <new>
#include <thread>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

// What is in use, of all that operator new gave; and how many blocks it gives before it fails once.
long blocks;
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

void* operator new(std::size_t size) {
    void* const block = untilFailure-- == 0 ? nullptr : std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++blocks;
    return block;
}

void operator delete(void* block) noexcept {
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
    OnThread([] {
        Row("first");
        long const before = blocks;
        for (int i = 0; i < 100; ++i) {
            Element const row = Row("next " + std::to_string(i));
            EXPECT_LE(blocks, before + QUILLO_POOL * 2) << "the lists of the pool grow";
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

TEST_F(PoolTest, AnElementMayBeMadeInAPlaceOfItsOwner) {
    alignas(DivImpl) char place[sizeof(DivImpl)];
    DivImpl* const made = new (place) DivImpl;
    EXPECT_EQ(static_cast<void*>(made), place);
    made->~DivImpl();
}

}  // namespace
