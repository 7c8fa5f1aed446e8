// Memory that runs out, at each allocation in turn.
#include <functional>

#include "support/failing_memory.hpp"
#include "text/uri_args_fixture.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Fields;

// Long enough to lie on the heap.
std::string const oldText = "the text that an output holds before the call, of more than 40 bytes";
Fields const oldFields = {oldText, "b"};
UriArgs const oldArgs = {{oldText, oldText}, {"b", "2"}};

template <class T>
void ExpectOneOf(T const& output, T const& before, T const& whole, bool hasReturned) {
    if (hasReturned) {
        EXPECT_EQ(output, whole);
    } else {
        EXPECT_TRUE(output == before || output == T());
    }
}

class TextAllocTest : public UriArgsFixture {
protected:
    TextAllocTest() {
        Platform().onLogEntry = [this] { Suspend(); };
        Platform().afterLogEntry = [this] { FailingMemory::allowance = allowance; };
    }

    // Makes the n-th allocation of `call` fail, for every n that it gets to, alone and with all
    // that follow. `check` is told whether the call returned. Gives back how many allocations were
    // made to fail.
    int FailEach(std::function<void()> const& prepare, std::function<void()> const& call,
                 std::function<void(bool)> const& check) {
        FailEach(prepare, call, check, FailingMemory::Once);
        return FailEach(prepare, call, check, FailingMemory::AllFromThenOn);
    }

    // The platform's log takes memory of its own, which there always is.
    void Suspend() {
        allowance = FailingMemory::allowance;
        FailingMemory::allowance = -1;
    }

    int allowance = -1;

private:
    static int FailEach(std::function<void()> const& prepare, std::function<void()> const& call,
                        std::function<void(bool)> const& check, FailingMemory::Failure failure) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE("allocation " + std::to_string(n));
            prepare();
            debugMsgs = Div();
            Platform().log.clear();
            Platform().trace.clear();
            FailingMemory::Allow(n, failure);
            bool hasReturned = true;
            try {
                call();
            } catch (std::bad_alloc const&) {
                hasReturned = false;
            }
            FailingMemory::AllowAll();
            EXPECT_TRUE(hasReturned || FailingMemory::hasFailed);
            EXPECT_LE(DebugLines().size(), Platform().log.size()) << "no half of a line either";
            check(hasReturned);
            if (!FailingMemory::hasFailed) {
                return n;
            }
        }
    }
};

TEST_F(TextAllocTest, SplitKeepsTheOldFieldsOrEmptiesThem) {
    std::string const first = "a field that is too long to be kept in place";
    std::string const text = first + ",,b," + oldText;
    Fields const whole = {first, "", "b", oldText.substr(0, 45), oldText.substr(46)};
    Fields fields;
    EXPECT_GE(
        FailEach([&] { fields = oldFields; }, [&] { Split(text, ",", fields, KeepEmpty); },
                 [&](bool hasReturned) { ExpectOneOf(fields, oldFields, whole, hasReturned); }),
        4);
}

TEST_F(TextAllocTest, SplitOfAFieldKeepsTheOldFieldsOrEmptiesThem) {
    Fields fields;
    Fields const whole = {oldText.substr(0, 45), oldText.substr(46)};
    EXPECT_GE(
        FailEach([&] { fields = oldFields; }, [&] { Split(fields[0], ",", fields, SkipEmpty); },
                 [&](bool hasReturned) { ExpectOneOf(fields, oldFields, whole, hasReturned); }),
        2);
}

TEST_F(TextAllocTest, ParseUriKeepsTheOldOutputsOrEmptiesThem) {
    std::string const directory = "/a directory whose name is long/";
    std::string const name = "a page whose name is long as well";
    std::string dir;
    std::string page;
    UriArgs args;
    auto const prepare = [&] {
        dir = oldText;
        page = oldText;
        args = oldArgs;
    };
    struct Row {
        std::string query;
        UriArgs args;
        std::size_t reports;
    };
    for (Row const& row : {Row{"", {}, 0}, Row{"?x=" + oldText, {{"x", oldText}}, 0},
                           Row{"?x=1&" + oldText + "&x=2", {{"x", "2"}, {oldText, ""}}, 3}}) {
        std::string const uri = directory + name + row.query;
        bool isBad = false;
        EXPECT_GE(FailEach(
                      prepare, [&] { isBad = ParseUri(uri, dir, page, args); },
                      [&](bool hasReturned) {
                          ExpectOneOf(dir, oldText, directory, hasReturned);
                          ExpectOneOf(page, oldText, name, hasReturned);
                          ExpectOneOf(args, oldArgs, row.args, hasReturned);
                          if (hasReturned) {
                              EXPECT_EQ(isBad, row.reports != 0);
                              EXPECT_EQ(Platform().log.size(), row.reports);
                          }
                      }),
                  2);
    }
}

TEST_F(TextAllocTest, ParseUriOfAnOutputKeepsItWholeOrEmptiesIt) {
    std::string const uri = "/a directory whose name is long/a page whose name is long as well?x=1";
    std::string text;
    std::string page;
    UriArgs args;
    FailEach([&] { text = uri; }, [&] { ParseUri(text, text, page, args); },
             [&](bool hasReturned) {
                 ExpectOneOf<std::string>(text, uri, "/a directory whose name is long/",
                                          hasReturned);
             });
}

TEST_F(TextAllocTest, GetUriArgsThrowsBadAllocAloneAndTheNextCallWorks) {
    UriArgs const defaults = {{oldText, oldText}, {"b", "2"}};
    std::string const text = "a=" + oldText + "&a flag whose name is not so short&b=%2B";
    UriArgs const whole = {{"LANGUAGE", "de"}, {oldText, oldText}, {"a", oldText}, {"b", " "}};
    UriArgs got;
    int const failures = FailEach(
        [&] {
            got.clear();
            Platform().languageAnswer = "de-de-1996";
            Platform().knownLanguages["de"] = true;
        },
        [&] { got = Args(text.c_str(), defaults); },
        [&](bool hasReturned) {
            if (hasReturned) {
                EXPECT_EQ(got, whole);
                EXPECT_EQ(Platform().log.size(), 10U) << "the device log is told all the same";
            }
            EXPECT_EQ(Args(text.c_str(), defaults), whole);
        });
    EXPECT_GE(failures, 20);
}

TEST_F(TextAllocTest, TextFunctionsThrowBadAllocAloneAndTheNextCallWorks) {
    std::string const text = oldText + "<&\"\x01'\\>%41%u20AC";
    std::vector<std::function<std::string()>> const calls = {
        [&] { return Filter(text); },
        [&] { return PcntEncode(text); },
        [&] { return PcntDecode(text.c_str(), nullptr); },
        [&] { return AddSlashes(text); },
        [&] { return EscapeJavascriptString(text); },
        [&] { return AppendUriArgs(text, text); }};
    for (auto const& function : calls) {
        std::string const whole = function();
        std::string got;
        EXPECT_GE(FailEach([&] { got.clear(); }, [&] { got = function(); },
                           [&](bool hasReturned) {
                               ExpectOneOf<std::string>(got, "", whole, hasReturned);
                           }),
                  1);
    }
}

}  // namespace
