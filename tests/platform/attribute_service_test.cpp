#include "host/attribute_service.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "host/host.hpp"
#include "host/sys/sys_objects.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"

namespace {

using QuilloHost::AnswerRequest;
using QuilloHost::CountRequests;
using QuilloHost::FindRequest;
using QuilloHost::MakeAnswer;
using QuilloHost::Provider;
using QuilloHost::ProviderList;
using QuilloHost::RequestState;
using QuilloHost::Table;

std::optional<Table> Pets() {
    return Table{{"name", "legs"}, {{"cat", "4"}, {"bird\n", "2"}, {"eel", std::nullopt}}};
}

std::optional<Table> Nobody() {
    return Table{{"name"}, {}};
}

std::optional<Table> Gone() {
    return std::nullopt;
}

std::optional<Table> Greedy() {
    throw std::bad_alloc();
}

std::optional<Table> FindPets(std::string const& sought) {
    return Table{{"name"}, {{"<" + sought + ">"}}};
}

Provider const objects[] = {{"pets", Pets},
                            {"nobody", Nobody},
                            {"gone", Gone},
                            {"greedy", Greedy},
                            {"zoo", Nobody, FindPets}};
ProviderList const providers{objects, std::size(objects)};

std::string Answer(RequestState const& state) {
    return MakeAnswer(state, providers);
}

RequestState Request(std::optional<std::string> object, std::optional<std::string> attrs,
                     std::optional<std::string> format, std::optional<std::string> defaultValue) {
    RequestState state;
    state.object = std::move(object);
    state.attrs = std::move(attrs);
    state.format = std::move(format);
    state.defaultValue = std::move(defaultValue);
    return state;
}

TEST(Answer, HasOneLineForEachRecord) {
    EXPECT_EQ(Answer(Request("pets", "name legs", "%1\t%2\n", "?")), "cat\t4\nbird \t2\neel\t?\n");
    EXPECT_EQ(Answer(Request("pets", "legs", "%1;", "")), "4;2;;");
    EXPECT_EQ(Answer(Request("nobody", "name", "%1\n", "?")), "");
}

TEST(Answer, GivesAnAttributeAsOftenAsItIsNamed) {
    EXPECT_EQ(Answer(Request("pets", "legs name legs", "%1%2%3,", "?")), "4cat4,2bird 2,?eel?,");
}

TEST(Answer, GivesTheDefaultForAnUnknownAttribute) {
    EXPECT_EQ(Answer(Request("pets", "wings name", "%1 %2,", "?")), "? cat,? bird ,? eel,");
    EXPECT_EQ(Answer(Request("pets", std::nullopt, "%1,", "?")), "?,?,?,");
}

TEST(Answer, IsTheDefaultAloneWithoutAnObject) {
    EXPECT_EQ(Answer(Request("unicorns", "name", "%1\n", "Unavailable")), "Unavailable");
    EXPECT_EQ(Answer(Request("", "name", "%1\n", "Unavailable")), "Unavailable");
    EXPECT_EQ(Answer(Request(std::nullopt, "name", "%1\n", "Unavailable")), "Unavailable");
    EXPECT_EQ(Answer(Request("gone", "name", "%1\n", "a\tb")), "a\tb");
    EXPECT_EQ(Answer(Request("pet", "name", "%1\n", "Unavailable")), "Unavailable");
    EXPECT_EQ(Answer(Request("unicorns", "name", "%1\n", std::nullopt)), "");
}

TEST(Answer, IsOfTheRecordsThatAreSoughtWhereTheObjectFindsThem) {
    EXPECT_EQ(Answer(Request("zoo", "name", "%1\n", "?")), "");
    EXPECT_EQ(Answer(Request("zoo ", "name", "%1\n", "?")), "<>\n");
    EXPECT_EQ(Answer(Request("zoo a  b ", "name", "%1\n", "?")), "<a  b >\n");
    EXPECT_EQ(Answer(Request("zoos a", "name", "%1\n", "?")), "?");
    EXPECT_EQ(Answer(Request("pets a", "name", "%1\n", "?")), "?");
    EXPECT_EQ(Answer(Request("pets ", "name", "%1\n", "?")), "?");
}

TEST(Answer, IsEmptyWithoutAFormat) {
    EXPECT_EQ(Answer(Request("pets", "name", std::nullopt, "?")), "");
}

// A record with an output of its own.
class Service : public testing::Test {
protected:
    ~Service() override { loareq_free(&app); }

    char* TextPointer() const { return reinterpret_cast<char*>(app.loaState[6]); }

    CapturePipe pipe;
    ZOV_AppData app{{}, nullptr, pipe.out, {}};
};

TEST_F(Service, AnswersWhatTheSettingCallsStored) {
    ASSERT_EQ(loareq_initialize(&app), 0);
    loareq_set_object(&app, "pets");
    loareq_set_attrs(&app, "name");
    loareq_set_format(&app, "%1,%2,");
    loareq_set_default_val(&app, "?");
    EXPECT_EQ(AnswerRequest(&app, "format", providers), 0);
    EXPECT_EQ(pipe.Finish(), "cat,?,bird ,?,eel,?,");
}

TEST_F(Service, CopiesEveryText) {
    ASSERT_EQ(loareq_initialize(&app), 0);
    char text[] = "pets";
    loareq_set_object(&app, text);
    loareq_set_attrs(&app, text);
    loareq_set_format(&app, text);
    loareq_set_default_val(&app, text);
    loareq_set_fnName(&app, text);
    loareq_set_fnArg(&app, text);
    loareq_set_context(&app, text);
    std::strcpy(text, "xxxx");
    RequestState const& state = *FindRequest(&app);
    EXPECT_EQ(state.object, "pets");
    EXPECT_EQ(state.attrs, "pets");
    EXPECT_EQ(state.format, "pets");
    EXPECT_EQ(state.defaultValue, "pets");
    EXPECT_EQ(state.fnName, "pets");
    EXPECT_EQ(state.fnArg, "pets");
    EXPECT_EQ(state.context, "pets");
}

TEST_F(Service, TakesANullPointerForUnset) {
    ASSERT_EQ(loareq_initialize(&app), 0);
    for (char const* text : {"set", static_cast<char const*>(nullptr)}) {
        loareq_set_object(&app, text);
        loareq_set_attrs(&app, text);
        loareq_set_format(&app, text);
        loareq_set_default_val(&app, text);
        loareq_set_fnName(&app, text);
        loareq_set_fnArg(&app, text);
        loareq_set_context(&app, text);
    }
    RequestState const& state = *FindRequest(&app);
    for (auto const& setting : {state.object, state.attrs, state.format, state.defaultValue,
                                state.fnName, state.fnArg, state.context}) {
        EXPECT_EQ(setting, std::nullopt);
    }
    EXPECT_EQ(TextPointer(), nullptr);
}

TEST_F(Service, HandsGetFunctionsAWritableCopyOfTheArgument) {
    ASSERT_EQ(loareq_initialize(&app), 0);
    EXPECT_EQ(TextPointer(), nullptr);
    char const argument[] = "argument";
    loareq_set_fnArg(&app, argument);
    EXPECT_NE(TextPointer(), argument);
    EXPECT_STREQ(TextPointer(), "argument");
    TextPointer()[0] = 'A';
    EXPECT_STREQ(TextPointer(), "Argument");
    loareq_set_fnArg(&app, TextPointer() + 1);
    EXPECT_STREQ(TextPointer(), "rgument");
}

TEST_F(Service, ReleasesARequestThatWasGivenUpWhenItsRecordIsUsedAgain) {
    std::size_t const before = CountRequests();
    for (int i = 0; i < 3; ++i) {
        std::memset(app.loaState, 0, sizeof app.loaState);
        ASSERT_EQ(loareq_initialize(&app), 0);
        loareq_set_fnArg(&app, "an argument that takes memory of its own on the heap");
        EXPECT_EQ(CountRequests(), before + 1);
    }
}

TEST_F(Service, BeginsARequestWithoutTheSettingsOfTheOneBefore) {
    ASSERT_EQ(loareq_initialize(&app), 0);
    loareq_set_object(&app, "pets");
    ASSERT_EQ(loareq_initialize(&app), 0);
    EXPECT_EQ(FindRequest(&app)->object, std::nullopt);
}

TEST_F(Service, KeepsTheRequestsOfTwoRecordsApart) {
    ZOV_AppData other{};
    ASSERT_EQ(loareq_initialize(&app), 0);
    ASSERT_EQ(loareq_initialize(&other), 0);
    loareq_set_object(&app, "one");
    loareq_set_object(&other, "two");
    EXPECT_EQ(FindRequest(&app)->object, "one");
    loareq_free(&app);
    EXPECT_EQ(FindRequest(&other)->object, "two");
    loareq_free(&other);
}

TEST_F(Service, LeavesNothingBehindWhenARequestEnds) {
    std::size_t const before = CountRequests();
    ASSERT_EQ(loareq_initialize(&app), 0);
    loareq_set_fnArg(&app, "argument");
    loareq_free(&app);
    EXPECT_EQ(CountRequests(), before);
    for (std::uintptr_t const word : app.loaState) {
        EXPECT_EQ(word, 0U);
    }
    loareq_free(&app);
    loareq_free(nullptr);
}

void SetAll(ZOV_AppData* app) {
    loareq_set_object(app, "x");
    loareq_set_attrs(app, "x");
    loareq_set_format(app, "x");
    loareq_set_default_val(app, "x");
    loareq_set_fnName(app, "x");
    loareq_set_fnArg(app, "x");
    loareq_set_context(app, "x");
}

TEST_F(Service, LogsASettingCallOutsideARequestAndChangesNothing) {
    CapturedStderr const captured;
    app.loaState[0] = 0x1234;  // no state of the service
    app.loaState[6] = 0x5678;
    SetAll(&app);
    EXPECT_EQ(app.loaState[0], 0x1234U);
    EXPECT_EQ(app.loaState[6], 0x5678U);
    ASSERT_EQ(loareq_initialize(&app), 0);
    std::memset(app.loaState, 0, sizeof app.loaState);  // as the library does
    SetAll(&app);
    EXPECT_EQ(app.loaState[6], 0U);
    SetAll(nullptr);
    EXPECT_NE(captured.Text().find("loareq_set_fnName: there is no request\n"), std::string::npos);
}

TEST_F(Service, RefusesToAnswerOutsideARequest) {
    CapturedStderr const captured;
    EXPECT_NE(format_sys_request(&app), 0);
    EXPECT_NE(format_con_request(&app), 0);
    EXPECT_NE(format_true_loa_request(&app), 0);
    EXPECT_NE(format_sys_request(nullptr), 0);
    EXPECT_EQ(pipe.Finish(), "");
    for (char const* name :
         {"format_sys_request", "format_con_request", "format_true_loa_request"}) {
        EXPECT_NE(captured.Text().find(name + std::string(": there is no request\n")),
                  std::string::npos);
    }
}

TEST_F(Service, RefusesToBeginARequestWithoutARecord) {
    CapturedStderr const captured;
    EXPECT_NE(loareq_initialize(nullptr), 0);
    EXPECT_NE(captured.Text().find("loareq_initialize: there is no record\n"), std::string::npos);
}

TEST_F(Service, LogsAnObjectThatNeedsTooMuchMemory) {
    CapturedStderr const captured;
    ASSERT_EQ(loareq_initialize(&app), 0);
    loareq_set_object(&app, "greedy");
    EXPECT_NE(AnswerRequest(&app, "format", providers), 0);
    EXPECT_NE(captured.Text().find("format: std::bad_alloc\n"), std::string::npos);
    EXPECT_EQ(pipe.Finish(), "");
}

TEST_F(Service, GivesTheDefaultForObjectsOfTheKindsItKnowsNoneOf) {
    for (auto* formatter : {format_con_request, format_true_loa_request}) {
        ASSERT_EQ(loareq_initialize(&app), 0);
        loareq_set_object(&app, "host");
        loareq_set_format(&app, "%1\n");
        loareq_set_default_val(&app, "Unavailable;");
        EXPECT_EQ(formatter(&app), 0);
    }
    EXPECT_EQ(pipe.Finish(), "Unavailable;Unavailable;");
}

std::vector<std::string> watched;

void Watch(char const* object, std::chrono::nanoseconds taken) noexcept {
    watched.push_back(object + std::string(taken.count() >= 0 ? "" : " took less than no time"));
}

TEST_F(Service, TellsTheWatchOfEachObjectThatIsAskedFor) {
    watched.clear();
    CapturedStderr const captured;
    for (auto* const watch : {Watch, QuilloHost::QueryWatch()}) {
        QuilloHost::SetQueryWatch(watch);
        for (char const* object : {"pets", "unicorns", "greedy"}) {
            ASSERT_EQ(loareq_initialize(&app), 0);
            loareq_set_object(&app, object);
            AnswerRequest(&app, "format", providers);
        }
        loareq_free(&app);
        AnswerRequest(&app, "format", providers);
    }
    EXPECT_EQ(watched, (std::vector<std::string>{"pets", "unicorns", "greedy"}));
}

TEST_F(Service, KnowsTheSysObjects) {
    CapturedStderr const captured;  // a file, which the object "log" is read from
    std::string names;
    for (Provider const& provider : QuilloHost::SysObjects()) {
        names += provider.object + std::string(" ");
        auto const table = provider.read();
        ASSERT_TRUE(table.has_value()) << provider.object;
        for (QuilloHost::Record const& record : table->records) {
            EXPECT_EQ(record.size(), table->columns.size()) << provider.object;
        }
    }
    EXPECT_EQ(names, "host memory interfaces storage processes log ");
}

}  // namespace
