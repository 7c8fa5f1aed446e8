// Reports, traces, setters, texts and teardown when memory runs out, at every allocation there is:
// for once, and from then on.
#include "elements/diagnostics.hpp"

#include <iterator>
#include <ostream>
#include <streambuf>
#include <thread>

#include "elements/renderer.hpp"
#include "support/failing_memory.hpp"
#include "support/page_test.hpp"

using namespace Quillo;

namespace {

constexpr FailingMemory::Failure kinds[] = {FailingMemory::AllFromThenOn, FailingMemory::Once};

// The recording of log entries takes memory, which is there all the time.
class ReportsWithoutMemoryTest : public PageTest {
protected:
    ReportsWithoutMemoryTest() {
        Platform().onLogEntry = [this] { pause.emplace(); };
        Platform().afterLogEntry = [this] { pause.reset(); };
    }

    std::optional<FailingMemory::Pause> pause;
};

// Runs `work` with the n-th allocation failing, for every n until none fails, and `check` after
// each. The device log has memory all the time.
template <class Work, class Check>
void ForEveryAllocation(Work work, Check check) {
    for (FailingMemory::Failure const kind : kinds) {
        int allowance = 0;
        do {
            debugMsgs = Div();
            Platform().log.clear();
            FailingMemory::Allow(allowance++, kind);
            work();
            bool const hasFailed = FailingMemory::hasFailed;
            FailingMemory::AllowAll();
            check(hasFailed);
            FailingMemory::hasFailed = hasFailed;
        } while (FailingMemory::hasFailed);
        EXPECT_GT(allowance, 1) << "no allocation was made at all";
    }
}

TEST_F(ReportsWithoutMemoryTest, AReportIsLoggedAndAddsBothOfItsElementsOrNone) {
    ForEveryAllocation(
        [] {
            ReportDiagnostic(logSpecError, "%s:  a message that is too long to be kept in place",
                             "Test");
        },
        [](bool hasFailed) {
            ASSERT_EQ(Platform().log.size(), 1U);
            EXPECT_EQ(Platform().log[0].message,
                      "Test:  a message that is too long to be kept in place");
            EXPECT_EQ(debugMsgs.impl->children.size(), hasFailed ? 0U : 2U);
        });
}

TEST_F(ReportsWithoutMemoryTest, AReportAddsBothOrNoneWhereThereIsRoomForOneAlone) {
    ForEveryAllocation(
        [] {
            {
                FailingMemory::Pause const setUp;
                debugMsgs.impl->children.reserve(3);
                debugMsgs << Br() << Br();
            }
            ReportDiagnostic(logSpecError, "m");
        },
        [](bool hasFailed) { EXPECT_EQ(debugMsgs.impl->children.size(), hasFailed ? 2U : 4U); });
}

TEST_F(ReportsWithoutMemoryTest, ATraceIsLoggedWhateverBecomesOfItsLine) {
    std::string const value(300, 'v');
    bool isWholeWithoutLine = false;
    ForEveryAllocation(
        [&] { TraceDiagnostic("{", "name", "} = {", value, "} ", -12); },
        [&](bool hasFailed) {
            ASSERT_EQ(Platform().log.size(), 1U);
            LogEntry const& entry = Platform().log[0];
            EXPECT_EQ(entry.level, "info");
            std::string const whole =
                "At tests/elements/reports_without_memory_test.cpp:" + std::to_string(entry.line) +
                ": {name} = {" + value + "} -12";
            bool const isWhole = entry.message == whole;
            EXPECT_TRUE(isWhole || entry.message == whole.substr(0, 199)) << entry.message;
            EXPECT_TRUE(isWhole || hasFailed);
            EXPECT_EQ(debugMsgs.impl->children.size(), hasFailed ? 0U : 2U);
            isWholeWithoutLine = isWholeWithoutLine || (isWhole && hasFailed);
        });
    EXPECT_TRUE(isWholeWithoutLine) << "what was built of a trace is logged as it is";
}

TEST_F(ReportsWithoutMemoryTest, ATraceFromAFileOfALongNameIsCutInIt) {
    for (std::size_t const length : {190U, 195U, 196U, 197U, 300U}) {
        std::string const name(length, 'f');
        Platform().log.clear();
        FailingMemory::Allow(0);
        Diagnostics::Trace(name.c_str(), 1, {"{", "value"});
        FailingMemory::AllowAll();
        EXPECT_EQ(Platform().log.at(0).message, ("At " + name + ":1: {value").substr(0, 199));
    }
}

TEST_F(ReportsWithoutMemoryTest, ATreeIsTakenDownWithoutMemory) {
    struct Witness : ElementImpl {
        explicit Witness(int& deaths) : ElementImpl("witness", false), count(deaths) {}
        Witness(Witness const&) = delete;
        Witness& operator=(Witness const&) = delete;
        ~Witness() override { ++count; }
        int& count;
    };
    int deaths = 0;
    for (int step = 0; step < 16; ++step) {
        Element root(boost::shared_ptr<ElementImpl>(new Witness(deaths)));
        Element parent = root;
        for (int level = 0; level < 100; ++level) {
            Element const child(boost::shared_ptr<ElementImpl>(new Witness(deaths)));
            parent << child << Element(boost::shared_ptr<ElementImpl>(new Witness(deaths)));
            parent = child;
        }
        parent = Element();
        deaths = 0;
        FailingMemory::Allow(step / 2, kinds[step % 2]);
        root = Element();
        FailingMemory::AllowAll();
        EXPECT_EQ(deaths, 201);
    }
}

// On a thread of its own: the pool of this one may have a place to give.
TEST_F(ReportsWithoutMemoryTest, AChildThatFindsNoPlaceHasNoParent) {
    std::thread([] {
        Div const parent;
        Br const child;
        FailingMemory::Allow(0);
        EXPECT_THROW(parent << child, std::bad_alloc);
        FailingMemory::AllowAll();
        EXPECT_EQ(child.impl->parent, nullptr);
        EXPECT_TRUE(parent.impl->children.empty());
    }).join();
}

TEST_F(ReportsWithoutMemoryTest, AnImageHasItsAddressBeforeItsClass) {
    std::string const url = "/an/address/that/is/too/long/to/be/kept/in/place.gif";
    int withoutClass = 0;
    for (FailingMemory::Failure const kind : kinds) {
        int allowance = 0;
        do {
            Img image;
            FailingMemory::Allow(allowance++, kind);
            try {
                image.Src(url);
            } catch (std::bad_alloc const&) {
            }
            FailingMemory::AllowAll();
            std::size_t const addresses = image.impl->attrs.count("src");
            std::size_t const classes = image.impl->attrs.count("class");
            EXPECT_GE(addresses, classes);
            withoutClass += addresses > classes ? 1 : 0;
        } while (FailingMemory::hasFailed);
    }
    EXPECT_GT(withoutClass, 0);
}

// Sets an attribute and adds a style behind `allowance` allocations; returns whether one failed.
bool SetBehind(int allowance, FailingMemory::Failure kind) {
    std::string const longName(40, 'n');
    std::string const longValue(40, 'v');
    Div div;
    div.SetEmptyAttr(longName).SetEmptyAttr("style");
    FailingMemory::Allow(allowance, kind);
    try {
        div.SetAttr(longName, longValue);
        FailingMemory::AllowAll();
        EXPECT_EQ(div.impl->emptyAttrs.count(longName), 0U);
        EXPECT_EQ(div.impl->attrs.at(longName), longValue);
    } catch (std::bad_alloc const&) {
        FailingMemory::AllowAll();
        EXPECT_EQ(div.impl->attrs.size(), 0U);
        EXPECT_EQ(div.impl->emptyAttrs.size(), 2U);
    }
    bool const hasFailed = FailingMemory::hasFailed;
    std::size_t const attributes = div.impl->attrs.size();
    FailingMemory::Allow(allowance, kind);
    try {
        div.AddStyle(longValue);
        FailingMemory::AllowAll();
        EXPECT_EQ(div.impl->emptyAttrs.count("style"), 0U);
    } catch (std::bad_alloc const&) {
        FailingMemory::AllowAll();
        EXPECT_EQ(div.impl->attrs.size(), attributes);
        EXPECT_EQ(div.impl->emptyAttrs.count("style"), 1U);
    }
    return hasFailed || FailingMemory::hasFailed;
}

TEST_F(ReportsWithoutMemoryTest, ASetterChangesAllOrNothing) {
    for (FailingMemory::Failure const kind : kinds) {
        int allowance = 0;
        while (SetBehind(allowance, kind)) {
            ++allowance;
        }
        EXPECT_GT(allowance, 1);
    }
}

// A page that fits.
class FixedBuffer : public std::streambuf {
public:
    FixedBuffer() { setp(std::begin(bytes), std::end(bytes)); }
    std::string Text() const { return {pbase(), pptr()}; }

private:
    char bytes[1000] = {};
};

TEST_F(ReportsWithoutMemoryTest, AShortTextIsEscapedAndWrittenWithoutMemory) {
    if (isSmall) {
        GTEST_SKIP() << "the small library passes a text through Filter";
    }
    Element const text = Text(std::string(40, '<'), true);
    FixedBuffer buffer;
    std::ostream stream(&buffer);
    Renderer r(stream);
    FailingMemory::Allow(0);
    try {
        text.impl->Render(r, 0);
    } catch (std::bad_alloc const&) {
        // It took some: the page is not whole.
    }
    FailingMemory::AllowAll();
    std::string html;
    for (int i = 0; i < 40; ++i) {
        html += "&lt;";
    }
    EXPECT_EQ(buffer.Text(), html);
    EXPECT_TRUE(stream.good());
}

}  // namespace
