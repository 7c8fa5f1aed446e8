// What every platform's attribute service has to do, whatever its objects are.
#include <attribute_service.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/capture_pipe.hpp"
#include "platform/contract_subject.hpp"

namespace {

class AttributeServiceContract : public testing::Test {
protected:
    AttributeServiceContract() { ContractSubject::Prepare(); }

    // Begins a request as the library does.
    void Begin() {
        std::memset(app.loaState, 0, sizeof app.loaState);
        ASSERT_EQ(loareq_initialize(&app), 0);
    }

    // Asks for the two attributes of the known object and gives the answer.
    std::string Ask(char const* object, char const* attrs, char const* format) {
        CapturePipe pipe;
        app.out = pipe.out;
        Begin();
        loareq_set_object(&app, object);
        loareq_set_attrs(&app, attrs);
        loareq_set_format(&app, format);
        loareq_set_default_val(&app, "Unavailable");
        EXPECT_EQ(ContractSubject::Format(&app), 0);
        loareq_free(&app);
        return pipe.Finish();
    }

    std::string const both =
        ContractSubject::firstAttribute + std::string(" ") + ContractSubject::secondAttribute;
    ZOV_AppData app{};
};

std::size_t Count(std::string const& text, char byte) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), byte));
}

TEST_F(AttributeServiceContract, AnswersOneLineForEachRecord) {
    std::string const answer = Ask(ContractSubject::object, both.c_str(), "%1\t%2\n");
    ASSERT_GT(answer.size(), 0U);
    EXPECT_EQ(answer.back(), '\n');
    EXPECT_EQ(Count(answer, '\t'), Count(answer, '\n'));
    EXPECT_EQ(answer.find("\t\n"), std::string::npos);
    EXPECT_EQ(answer.find("\n\t"), std::string::npos);
    EXPECT_NE(answer.front(), '\t');
}

TEST_F(AttributeServiceContract, AnswersTheDefaultAloneForAnObjectThatCannotBeHad) {
    EXPECT_EQ(Ask("no such object", both.c_str(), "%1\t%2\n"), "Unavailable");
}

TEST_F(AttributeServiceContract, AnswersTheDefaultForAnAttributeThatCannotBeHad) {
    std::string const answer = Ask(ContractSubject::object, "no_such_attribute", "%1\n");
    ASSERT_GT(answer.size(), 0U);
    for (std::string rest = answer; !rest.empty(); rest.erase(0, rest.find('\n') + 1)) {
        EXPECT_EQ(rest.substr(0, rest.find('\n') + 1), "Unavailable\n");
    }
}

TEST_F(AttributeServiceContract, CopiesBytesOfTheFormatThatStandForNoValue) {
    std::string const answer = Ask(ContractSubject::object, both.c_str(), "<a>% \xe4|\n");
    ASSERT_GT(answer.size(), 0U);
    for (std::string rest = answer; !rest.empty(); rest.erase(0, rest.find('\n') + 1)) {
        EXPECT_EQ(rest.substr(0, rest.find('\n') + 1), "<a>% \xe4|\n");
    }
}

TEST_F(AttributeServiceContract, PutsValuesWhereTheirPositionsStand) {
    std::string const answer = Ask(ContractSubject::object, both.c_str(), "%2\t%1\t%2\n");
    std::string const line = answer.substr(0, answer.find('\n'));
    ASSERT_EQ(Count(line, '\t'), 2U);
    EXPECT_EQ(line.substr(0, line.find('\t')), line.substr(line.rfind('\t') + 1));
}

TEST_F(AttributeServiceContract, KeepsCopiesOfTheAttributesAndTheFormat) {
    CapturePipe pipe;
    app.out = pipe.out;
    Begin();
    loareq_set_object(&app, ContractSubject::object);
    loareq_set_default_val(&app, "Unavailable");
    std::string attrs = ContractSubject::firstAttribute;
    std::string format = "%1 of it\n";
    loareq_set_attrs(&app, attrs.c_str());
    loareq_set_format(&app, format.c_str());
    attrs.assign(attrs.size(), 'x');
    format.assign(format.size(), 'x');
    EXPECT_EQ(ContractSubject::Format(&app), 0);
    loareq_free(&app);
    std::string const answer = pipe.Finish();
    EXPECT_NE(answer.find(" of it\n"), std::string::npos);
    EXPECT_EQ(answer.find("Unavailable"), std::string::npos);
}

TEST_F(AttributeServiceContract, HandsGetFunctionsACopyOfTheirArgument) {
    Begin();
    char argument[] = "argument";
    loareq_set_fnName(&app, "function");
    loareq_set_fnArg(&app, argument);
    loareq_set_context(&app, "html");
    char const* const text = reinterpret_cast<char const*>(app.loaState[6]);
    ASSERT_NE(text, nullptr);
    EXPECT_NE(text, argument);
    std::strcpy(argument, "x");
    EXPECT_STREQ(text, "argument");
    loareq_free(&app);
}

TEST_F(AttributeServiceContract, BeginsAgainOnARecordWhoseRequestWasGivenUp) {
    std::string const before = Ask("no such object", "a", "%1\n");
    Begin();
    loareq_set_object(&app, ContractSubject::object);
    loareq_set_fnArg(&app, "an argument");
    EXPECT_EQ(Ask("no such object", "a", "%1\n"), before);
}

TEST_F(AttributeServiceContract, LeavesTheRestOfTheRecordAlone) {
    std::strcpy(app.preferredLang, "de-de");
    app.uriArgs = "a=b";
    Ask(ContractSubject::object, both.c_str(), "%1\n");
    EXPECT_STREQ(app.preferredLang, "de-de");
    EXPECT_STREQ(app.uriArgs, "a=b");
}

}  // namespace
