// How a tree dies.
#include <boost/weak_ptr.hpp>
#include <thread>

#include "support/page_test.hpp"
#include "support/small_stack.hpp"

using namespace Quillo;

namespace {

using TeardownTest = PageTest;

// Writes its name into a list when it dies, and how many children it still has.
struct Mortal : ElementImpl {
    Mortal(std::string const& name, std::string& deaths) : ElementImpl(name, false), list(deaths) {}
    Mortal(Mortal const&) = delete;
    Mortal& operator=(Mortal const&) = delete;
    ~Mortal() override { list += tag + std::to_string(children.size()) + " "; }

    std::string& list;
    Element held;  // a tree of its own
};

Element MakeMortal(std::string const& name, std::string& deaths) {
    return Element(boost::shared_ptr<ElementImpl>(new Mortal(name, deaths)));
}

TEST_F(TeardownTest, ElementsDieDepthFirstAParentBeforeItsChildrenAndChildrenInOrder) {
    std::string deaths;
    {
        Element const root = MakeMortal("a", deaths);
        Element const b = MakeMortal("b", deaths);
        root << b << MakeMortal("e", deaths)
             << (MakeMortal("f", deaths) << MakeMortal("g", deaths) << MakeMortal("h", deaths));
        b << (MakeMortal("c", deaths) << MakeMortal("d", deaths));
    }
    EXPECT_EQ(deaths, "a3 b1 c1 d0 e0 f2 g0 h0 ");
}

TEST_F(TeardownTest, ATreeThatAnElementHoldsDiesBeforeItsChildren) {
    std::string deaths;
    {
        Element const root = MakeMortal("a", deaths);
        Element const b = MakeMortal("b", deaths);
        root << b << MakeMortal("c", deaths);
        b << MakeMortal("d", deaths);
        static_cast<Mortal&>(*b.impl).held =
            MakeMortal("x", deaths) << (MakeMortal("y", deaths) << MakeMortal("z", deaths));
    }
    EXPECT_EQ(deaths, "a2 b1 x1 y1 z0 d0 c0 ");
}

TEST_F(TeardownTest, AnElementThatIsStillHeldLivesAndHasNoParent) {
    std::string deaths;
    Element const kept = MakeMortal("k", deaths);
    {
        Element const root = MakeMortal("a", deaths);
        root << kept << MakeMortal("b", deaths);
        EXPECT_EQ(kept.impl->parent, root.impl.get());
    }
    EXPECT_EQ(deaths, "a2 b0 ");
    EXPECT_EQ(kept.impl->parent, nullptr);
}

TEST_F(TeardownTest, AnElementUnderTwoParentsLosesItsParentWhenEitherDies) {
    Br const lineBreak;
    Div second;
    {
        Div const first;
        first << lineBreak;
        second << lineBreak;
        EXPECT_EQ(lineBreak.impl->parent, second.impl.get());
    }
    EXPECT_EQ(lineBreak.impl->parent, nullptr) << "the second parent still holds it";
    EXPECT_EQ(second.impl->children.at(0), lineBreak.impl);
}

TEST_F(TeardownTest, AnElementThatStandsTwiceDiesOnce) {
    std::string deaths;
    {
        Div const root;
        Element const twice = MakeMortal("t", deaths);
        root << twice << twice;
    }
    EXPECT_EQ(deaths, "t0 ");
}

TEST_F(TeardownTest, AnEmptyChildPointerIsPassedOver) {
    std::string deaths;
    {
        Element const root = MakeMortal("a", deaths);
        root.impl->children.resize(1);
        root << MakeMortal("b", deaths);
    }
    EXPECT_EQ(deaths, "a2 b0 ");
}

TEST_F(TeardownTest, AChainOfAMillionLevelsDiesOnASmallStack) {
    Element root = Div();
    boost::weak_ptr<ElementImpl> deepest;
    Element parent = root;
    for (int level = 0; level < 1000000; ++level) {
        Element const child = Div();
        parent << child;
        parent = child;
    }
    deepest = parent.impl;
    parent = Element();
    RunOnSmallStack([&] { root = Element(); });
    EXPECT_TRUE(deepest.expired());
}

TEST_F(TeardownTest, ACombOfAHundredThousandLevelsDiesOnASmallStack) {
    Element root = Div();
    boost::weak_ptr<ElementImpl> last;
    Element parent = root;
    for (int level = 0; level < 100000; ++level) {
        Element const child = Div();
        Br const tooth;
        parent << child << tooth;
        last = tooth.impl;
        parent = child;
    }
    parent = Element();
    RunOnSmallStack([&] { root = Element(); });
    EXPECT_TRUE(last.expired());
}

TEST_F(TeardownTest, AChainWhoseElementsHoldTreesDiesOnASmallStack) {
    struct Holder : ElementImpl {
        Holder() : ElementImpl("holder", false), held(Div() << Br()) {}
        Element held;
    };
    Element root = Div();
    Element parent = root;
    for (int level = 0; level < 10000; ++level) {
        Element const child(boost::shared_ptr<ElementImpl>(new Holder));
        parent << child;
        parent = child;
    }
    boost::weak_ptr<ElementImpl> const deepest = parent.impl;
    parent = Element();
    RunOnSmallStack([&] { root = Element(); });
    EXPECT_TRUE(deepest.expired());
}

TEST_F(TeardownTest, HandlesMayBeCopiedAndDroppedOnSeveralThreads) {
    std::string deaths;
    Element shared = MakeMortal("s", deaths) << Div();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([copy = shared] {
            for (int round = 0; round < 10000; ++round) {
                Element const another = copy;
                ASSERT_TRUE(another.impl);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    EXPECT_EQ(shared.impl.use_count(), 1);
    shared = Element();
    EXPECT_EQ(deaths, "s1 ");
}

}  // namespace
