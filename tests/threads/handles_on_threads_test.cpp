// What may be done on several threads at once: handles to one element are copied and dropped, and
// pages are built and written that share nothing but the library. A race is found by the thread
// sanitizer, under which the preset tsan builds this.
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/weak_ptr.hpp>
#include <quillo>
#include <sstream>
#include <thread>
#include <vector>

using namespace Quillo;

namespace {

constexpr int threadCount = 8;
constexpr int rounds = 2000;

// Runs `work` on eight threads, which are told their numbers.
template <class Work>
void OnThreads(Work const& work) {
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back(work, number);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

std::string Html(Element const& page) {
    std::ostringstream out;
    Renderer r(out);
    page.impl->Render(r, 0);
    return out.str();
}

// A page of a thread's own, of everything that needs no report.
std::string Page(int number) {
    std::string const name = "page " + std::to_string(number) + " <&\"> \xC3\xA9";
    Element form(boost::shared_ptr<ElementImpl>(new ElementImpl("form", false)));
    form.SetAttr("name", "f") << Span().SetOneLine().SetFocus().SetAttr("name", "e");
    Table table;
    table.AddRow() << Text(Filter(PcntDecode(PcntEncode(name).c_str(), nullptr)), false);
    std::vector<Slot> const slots = {{name, "/a", true, false}, {"other", "/b", false, true}};
    Div page;
    page << SmallTitle(name) << MakeNavBar(slots) << MakeTabs(slots, form) << table;
    page.AddStyle("width:" + std::to_string(number)) << Img().Src(AppendUriArgs("/i", name));
    return Html(page);
}

TEST(Threads, CopyAndDropHandlesToOneElement) {
    Div const shared;
    shared << Text("text", true) << (Span() << Br());
    OnThreads([&](int) {
        std::vector<Element> handles;
        for (int round = 0; round < rounds; ++round) {
            handles.emplace_back(shared);
            handles.push_back(handles[handles.size() / 2]);
            if (handles.size() > 20) {
                handles.erase(handles.begin(), handles.begin() + 15);
            }
        }
    });
    EXPECT_EQ(shared.impl.use_count(), 1);
    EXPECT_EQ(Html(shared), "<div>\ntext<span>\n<br >\n</span>\n</div>\n");
}

TEST(Threads, DropTheLastHandleWhereverThatIs) {
    for (int round = 0; round < rounds / 10; ++round) {
        Element tree = Div() << (Span() << Text("x", true) << Br()) << Div();
        boost::weak_ptr<ElementImpl> const watched = tree.impl;
        std::vector<Element> handles(threadCount, tree);
        tree = Element();
        OnThreads([&](int number) { handles[static_cast<std::size_t>(number)] = Element(); });
        EXPECT_TRUE(watched.expired());
    }
}

TEST(Threads, BuildAndWritePagesOfTheirOwn) {
    IsDebug();  // worked out once, and read from then on
    std::vector<std::string> expected;
    for (int number = 0; number < threadCount; ++number) {
        expected.push_back(Page(number));
    }
    std::vector<std::string> written(threadCount);
    OnThreads([&](int number) {
        for (int round = 0; round < rounds / 20; ++round) {
            written[static_cast<std::size_t>(number)] = Page(number);
        }
    });
    EXPECT_EQ(written, expected);
    EXPECT_TRUE(debugMsgs.impl->children.empty());
}

TEST(Threads, ReportIntoLinesOfTheirOwnOneAfterTheOther) {
    // `debugMsgs` is the process's: a thread that reports does so alone, and takes the lines along.
    std::vector<Div> lines(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        std::thread([&, number] {
            debugMsgs = lines[static_cast<std::size_t>(number)];
            for (int report = 0; report <= number; ++report) {
                MakeTabs({}, Element());
            }
            debugMsgs = Div();
        }).join();
    }
    OnThreads([&](int number) {
        std::string const page = Html(lines[static_cast<std::size_t>(number)]);
        EXPECT_EQ(std::count(page.begin(), page.end(), '\n'), 3 + number);
    });
}

}  // namespace
