// What every platform's attribute service has to do, whatever its objects are.
#include <attribute_service.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "capture_pipe.hpp"
#include "contract_subject.hpp"

namespace {

class AttributeServiceContractTest : public ::testing::Test {
protected:
    // Begins a request as the library does.
    void Begin(std::FILE* out) {
        app.out = out;
        std::memset(app.loaState, 0, sizeof app.loaState);
        ASSERT_EQ(loareq_initialize(&app), 0);
    }

    // The answer where "none" is the default value. The attributes and the format are gone when the
    // formatter runs.
    std::string Answer(std::string const& object, std::string attrs, std::string format) {
        CapturePipe pipe;
        Begin(pipe.out);
        loareq_set_object(&app, object.c_str());
        loareq_set_attrs(&app, attrs.c_str());
        loareq_set_format(&app, format.c_str());
        loareq_set_default_val(&app, "none");
        attrs.assign(attrs.size(), 'x');
        format.assign(format.size(), 'x');
        EXPECT_EQ(format_sys_request(&app), 0);
        loareq_free(&app);
        return pipe.Finish();
    }

    ContractSubject const subject = MakeContractSubject();
    std::string const both = subject.attribute + " " + subject.otherAttribute;
    ZOV_AppData app{};
};

TEST_F(AttributeServiceContractTest, ARecordIsOneLineOfTheFormat) {
    EXPECT_EQ(Answer(subject.object, both, "%1\t%2\n"),
              subject.value + "\t" + subject.otherValue + "\n");
    EXPECT_EQ(Answer(subject.object, both, "%2 is not %1\n"),
              subject.otherValue + " is not " + subject.value + "\n");
    EXPECT_EQ(Answer(subject.object, both, "%1%1\n"), subject.value + subject.value + "\n");
}

TEST_F(AttributeServiceContractTest, APositionTakesAllItsDigits) {
    std::string attrs = subject.attribute;
    for (int position = 2; position <= 12; ++position) {
        attrs += " " + (position == 10 ? subject.otherAttribute : subject.attribute);
    }
    EXPECT_EQ(Answer(subject.object, attrs, "%10|%1|%12\n"),
              subject.otherValue + "|" + subject.value + "|" + subject.value + "\n");
}

TEST_F(AttributeServiceContractTest, APercentSignWithoutDigitsStandsForItself) {
    EXPECT_EQ(Answer(subject.object, subject.attribute, "100%: %x%%1\n"),
              "100%: %x%" + subject.value + "\n");
}

TEST_F(AttributeServiceContractTest, AnUnknownObjectIsTheDefaultValueAlone) {
    EXPECT_EQ(Answer("no such object", "a b", "%1\t%2\n"), "none");
}

TEST_F(AttributeServiceContractTest, AnUnknownAttributeIsTheDefaultValueInItsColumn) {
    EXPECT_EQ(Answer(subject.object, "unheard-of " + subject.attribute, "%1\t%2\n"),
              "none\t" + subject.value + "\n");
}

TEST_F(AttributeServiceContractTest, AnEmptyNameIsAnUnknownAttributeThatKeepsItsColumn) {
    EXPECT_EQ(Answer(subject.object, " " + both, "%1|%2|%3\n"),
              "none|" + subject.value + "|" + subject.otherValue + "\n");
    EXPECT_EQ(Answer(subject.object, subject.attribute + "  " + subject.otherAttribute + " ",
                     "%1|%2|%3|%4\n"),
              subject.value + "|none|" + subject.otherValue + "|none\n");
    EXPECT_EQ(Answer(subject.object, "", "%1\n"), "none\n");
}

TEST_F(AttributeServiceContractTest, APositionWithoutAttributeIsTheDefaultValue) {
    EXPECT_EQ(Answer(subject.object, subject.attribute, "%0 %2 %99\n"), "none none none\n");
}

TEST_F(AttributeServiceContractTest, ARequestThatIsGivenUpIsNoHindranceToTheNextOne) {
    CapturePipe pipe;
    Begin(pipe.out);
    loareq_set_object(&app, "given up");
    loareq_set_fnArg(&app, "given up");
    EXPECT_EQ(Answer(subject.object, subject.attribute, "%1\n"), subject.value + "\n");
}

TEST_F(AttributeServiceContractTest, AGetFunctionsArgumentIsTheSeventhWord) {
    CapturePipe pipe;
    Begin(pipe.out);
    char phrase[] = "phrase";
    loareq_set_fnName(&app, "function");
    loareq_set_fnArg(&app, phrase);
    loareq_set_context(&app, "html");
    std::strcpy(phrase, "x");
    EXPECT_STREQ(reinterpret_cast<char*>(app.loaState[6]), "phrase");
    loareq_free(&app);
}

TEST_F(AttributeServiceContractTest, TheRestOfTheRecordStaysAsItIs) {
    std::strcpy(app.preferredLang, "de-de");
    app.uriArgs = "a=b";
    Answer(subject.object, both, "%1\n");
    EXPECT_STREQ(app.preferredLang, "de-de");
    EXPECT_STREQ(app.uriArgs, "a=b");
}

}  // namespace
