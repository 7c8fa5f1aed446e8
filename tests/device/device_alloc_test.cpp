// Device data when memory runs out: each call is made over and over, with its first allocation
// failing, then its second, until none is left to fail; once with a single failure and once with
// all that follow.
#include <gtest/gtest.h>

#include <new>
#include <quillo>

#include "device/heapless_platform.hpp"
#include "device/open_descriptors.hpp"
#include "support/failing_memory.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

class DeviceAllocTest : public ::testing::Test {
protected:
    DeviceAllocTest() : app() {
        Reset();
        app.out = stdout;
        before = OpenDescriptors();
    }
    ~DeviceAllocTest() override { Reset(); }

    static void Reset() {
        Heapless() = HeaplessPlatform();
        debugMsgs = Div();
    }

    // Runs `prepare`, then `request` with a failure in it, then `check`, which is told whether
    // `request` threw. Returns the number of failures that were tried.
    template <class Prepare, class Request, class Check>
    int ForEachFailure(Prepare prepare, Request request, Check check) {
        int tried = 0;
        for (FailingMemory::Failure const failure :
             {FailingMemory::Once, FailingMemory::AllFromThenOn}) {
            bool hasFailed = true;
            for (int allowance = 0; hasFailed; ++allowance) {
                debugMsgs = Div();
                Heapless().logEntries = 0;
                prepare();
                bool hasThrown = false;
                FailingMemory::Allow(allowance, failure);
                try {
                    request();
                } catch (std::bad_alloc const&) {
                    hasThrown = true;
                }
                FailingMemory::AllowAll();
                hasFailed = FailingMemory::hasFailed;
                EXPECT_LE(hasThrown, hasFailed);
                ExpectNothingLeft();
                check(hasThrown);
                if (HasFailure()) {
                    ADD_FAILURE() << "after " << allowance << " allocations";
                    return tried;
                }
                tried += hasFailed ? 1 : 0;
            }
        }
        return tried;
    }

    // A query for `object` in a table that has `rows` already; gives `result` and `expected` when
    // memory suffices, and makes `reports`.
    void ExpectQuery(std::vector<std::string> const& attrs, int result, Rows const& expected,
                     int reports) {
        Rows const old = {{"an old row whose text is long", "x"}, {"y"}};
        std::string const object = "an object with a long name";
        Rows rows;
        int given = -1;
        int const tried = ForEachFailure(
            [&] { rows = old; },
            [&] { given = GetObject(app, ObjectType_Sys, object, attrs, rows); },
            [&](bool hasThrown) {
                if (hasThrown) {
                    EXPECT_TRUE(rows.empty() || rows == old);
                } else {
                    EXPECT_EQ(given, result);
                    EXPECT_EQ(rows, expected);
                    EXPECT_EQ(Heapless().logEntries, reports);
                }
                rows = old;
                EXPECT_EQ(GetObject(app, ObjectType_Sys, object, attrs, rows), result);
                EXPECT_EQ(rows, expected);
            });
        EXPECT_GT(tried, 0);
    }

    void ExpectNothingLeft() {
        EXPECT_EQ(app.out, stdout);
        EXPECT_EQ(OpenDescriptors(), before);
        // A line and its line break come together.
        EXPECT_EQ(debugMsgs.impl->children.size() % 2, 0U);
    }

    ZOV_AppData app;
    std::set<int> before;
    std::string const longText = std::string(600, 't');
};

TEST_F(DeviceAllocTest, AnObjectQueryLeavesTheOldTableOrNone) {
    Heapless().answer = "a value that is long enough\tb\nc\tanother long enough value\n";
    ExpectQuery({"name", "an attribute with a long name"}, 0,
                {{"a value that is long enough", "b"}, {"c", "another long enough value"}}, 0);
}

TEST_F(DeviceAllocTest, AnAnswerThatIsRepairedIsReportedToTheLogInAnyCase) {
    Heapless().answer = "a value that is long enough\n\n\tx\ty";
    ExpectQuery({"name", "mtu"}, 0, {{"a value that is long enough", ""}, {"", ""}, {"", "x"}}, 4);
    EXPECT_STREQ(Heapless().lastMessage,
                 "GetObject:  Got back unexpected number of attributes: 3 instead of 2");
}

TEST_F(DeviceAllocTest, AnObjectThatCannotBeHadStaysSo) {
    Heapless().answer = "Unavailable";
    ExpectQuery({"name"}, 1, {}, 1);
}

TEST_F(DeviceAllocTest, AQueryWithoutAttributesStaysRefused) {
    ExpectQuery({}, 1, {}, 1);
}

TEST_F(DeviceAllocTest, AQueryWithoutACaptureStaysRefused) {
    Heapless().initializeResult = 1;
    ExpectQuery({"name"}, 1, {}, 2);
}

TEST_F(DeviceAllocTest, AQueryOfItsOwnTableLeavesTheOldTableOrNone) {
    Heapless().answer = "x\n";
    Rows const old = {{"an object with a long name", "an attribute with a long name"}};
    Rows rows;
    int const tried = ForEachFailure(
        [&] { rows = old; }, [&] { GetObject(app, ObjectType_Con, rows[0][0], rows[0], rows); },
        [&](bool hasThrown) {
            if (hasThrown) {
                EXPECT_TRUE(rows.empty() || rows == old);
            } else {
                EXPECT_EQ(rows, (Rows{{"x", ""}}));
            }
        });
    EXPECT_GT(tried, 0);
}

TEST_F(DeviceAllocTest, ATranslationIsWholeOrThrows) {
    Heapless().answer = longText.c_str();
    std::string const phrase = "a phrase that is long enough";
    std::string translation;
    int const tried = ForEachFailure(
        [&] { translation = "old"; },
        [&] { translation = TranslatePhrase(app, phrase, LoaContext_Html); },
        [&](bool hasThrown) {
            EXPECT_EQ(translation, hasThrown ? "old" : longText);
            EXPECT_EQ(TranslatePhrase(app, phrase.c_str(), LoaContext_Html), longText);
        });
    EXPECT_GT(tried, 0);
}

TEST_F(DeviceAllocTest, ACaptureThatFailsToReadIsFreedAndClosedAllTheSame) {
    std::string answer;
    int const tried = ForEachFailure([&] { Heapless().frees = 0; },
                                     [&] {
                                         LoaReq request(app);
                                         request.Init();
                                         std::fwrite(longText.data(), 1, longText.size(), app.out);
                                         answer = request.Finish();
                                     },
                                     [&](bool) { EXPECT_EQ(Heapless().frees, 1); });
    EXPECT_GT(tried, 0);
    EXPECT_EQ(answer, longText);
}

TEST_F(DeviceAllocTest, AFailedReadOrWriteOfASettingNeverThrows) {
    Heapless().configResult = 1;
    int result = 0;
    int const tried =
        ForEachFailure([&] { result = 0; },
                       [&] {
                           bool value = true;
                           result = GetConfig("a setting with a long name", value);
                           result += PutConfig("a setting with a long name", value);
                       },
                       [&](bool hasThrown) {
                           EXPECT_FALSE(hasThrown);
                           EXPECT_EQ(result, 2);
                           EXPECT_EQ(Heapless().logEntries, 2);
                           EXPECT_STREQ(Heapless().lastMessage,
                                        "Failed to get config value: a setting with a long name");
                       });
    EXPECT_GT(tried, 0);
}

TEST_F(DeviceAllocTest, APersistentWriteThatThrowsHasChangedNothing) {
    std::string const name = "a setting with a long name";
    for (int configResult : {0, 5}) {
        Heapless().configResult = configResult;
        int const tried = ForEachFailure(
            [&] { Heapless().updates = 0; }, [&] { PutPersistentConfig(name, true); },
            [&](bool hasThrown) {
                EXPECT_EQ(Heapless().updates, hasThrown ? 0 : 1);
                EXPECT_EQ(Heapless().logEntries, hasThrown || configResult == 0 ? 0 : 1);
            });
        EXPECT_GT(tried, 0);
    }
    EXPECT_STREQ(Heapless().lastMessage,
                 "ConfigUpdate(a setting with a long name=TRUE) failed status=5");
}

// What the recording platform cannot play, this one can.
typedef DeviceAllocTest HeaplessStoreTest;

TEST_F(HeaplessStoreTest, ASettingThatTheStoreLeavesOpenReadsFalse) {
    Heapless().writesFlag = false;
    bool value = true;
    EXPECT_EQ(GetConfig("ssh", value), 0);
    EXPECT_FALSE(value);
}

TEST_F(HeaplessStoreTest, WhatAFailedReadWroteIsNotTaken) {
    for (int result : {1, -1, 5}) {
        for (bool old : {false, true}) {
            Heapless().configResult = result;
            Heapless().flag = old ? 0 : 1;
            bool value = old;
            EXPECT_EQ(GetConfig("ssh", value), 1);
            EXPECT_EQ(value, old);
        }
    }
}

}  // namespace
