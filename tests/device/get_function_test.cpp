#include <cstring>
#include <stdexcept>

#include "device/device_fixture.hpp"

using namespace Quillo;

namespace {

// What the get-function below was handed, and what it writes.
struct {
    ZOV_AppData* app;
    std::FILE* out;
    char* arg;
    char* seventhWord;
    std::string text;
} call;

void WriteText(ZOV_AppData* app, char* arg) {
    Platform().trace.push_back(std::string("WriteText ") + (arg != nullptr ? arg : "(null)"));
    call.app = app;
    call.out = app->out;
    call.arg = arg;
    call.seventhWord = reinterpret_cast<char*>(app->loaState[6]);
    std::fwrite(call.text.data(), 1, call.text.size(), app->out);
}

void WriteAndThrow(ZOV_AppData* app, char*) {
    std::fputs("half an answer", app->out);
    throw std::runtime_error("no translation");
}

class GetFunctionTest : public DeviceTest {
protected:
    GetFunctionTest() { call = {}; }
};

TEST_F(GetFunctionTest, TheServiceIsToldNameArgumentAndContextBeforeTheCall) {
    call.text = "answer";
    EXPECT_EQ(InvokeLoaGetFunction(app, WriteText, "WriteText", "some arg", LoaContext_Js),
              "answer");
    EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize", "loareq_set_fnName WriteText",
                                       "loareq_set_fnArg some arg", "loareq_set_context js",
                                       "WriteText some arg", "loareq_free"}));
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(GetFunctionTest, NullTextsAndTheUnspecifiedContextAreNotPassed) {
    struct {
        char const* name;
        char const* arg;
        LoaContext context;
        Lines calls;
    } const rows[] = {
        {nullptr, nullptr, LoaContext_Unspecified, {"WriteText (null)"}},
        {"f", nullptr, LoaContext_Unspecified, {"loareq_set_fnName f", "WriteText (null)"}},
        {nullptr, "a", LoaContext_Unspecified, {"loareq_set_fnArg a", "WriteText a"}},
        {nullptr, nullptr, LoaContext_None, {"loareq_set_context none", "WriteText (null)"}},
        {"", "", LoaContext_Unspecified, {"loareq_set_fnName ", "loareq_set_fnArg ", "WriteText "}},
    };
    for (auto const& row : rows) {
        Platform() = RecordingPlatform();
        EXPECT_EQ(InvokeLoaGetFunction(app, WriteText, row.name, row.arg, row.context), "");
        Lines expected = {"loareq_initialize"};
        expected.insert(expected.end(), row.calls.begin(), row.calls.end());
        expected.push_back("loareq_free");
        EXPECT_EQ(Platform().trace, expected);
    }
}

TEST_F(GetFunctionTest, EachContextIsPassedByItsText) {
    struct {
        int context;
        std::string text;
    } const rows[] = {
        {1, "none"},
        {2, "html"},
        {3, "js"},
        {4, "php"},
        {5, "both"},
        {6, "unknown-LoaContext"},
        {-1, "unknown-LoaContext"},
    };
    for (auto const& row : rows) {
        Platform() = RecordingPlatform();
        InvokeLoaGetFunction(app, WriteText, nullptr, nullptr,
                             static_cast<LoaContext>(row.context));
        EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize", "loareq_set_context " + row.text,
                                           "WriteText (null)", "loareq_free"}));
    }
}

TEST_F(GetFunctionTest, TheGetFunctionIsHandedTheRecordAndTheSeventhWordAsTheSettingCallsLeaveIt) {
    char initial[] = "set by initialize";
    Platform().onInitialize = [&](ZOV_AppData* record) {
        record->loaState[6] = reinterpret_cast<std::uintptr_t>(initial);
    };
    InvokeLoaGetFunction(app, WriteText, "f", nullptr, LoaContext_Html);
    EXPECT_EQ(call.app, &app);
    EXPECT_NE(call.out, serverOut);
    EXPECT_EQ(call.arg, initial);

    char const argument[] = "argument";
    InvokeLoaGetFunction(app, WriteText, "f", argument, LoaContext_Html);
    EXPECT_NE(call.arg, initial);
    EXPECT_NE(call.arg, argument);
    EXPECT_EQ(call.arg, call.seventhWord);
    EXPECT_EQ(Platform().trace.at(Platform().trace.size() - 2), "WriteText argument");
}

TEST_F(GetFunctionTest, WithoutAnArgumentTheGetFunctionIsHandedNull) {
    std::memset(app.loaState, 0xA5, sizeof app.loaState);
    char anything[] = "x";
    call.arg = anything;
    InvokeLoaGetFunction(app, WriteText, "f", nullptr, LoaContext_Html);
    EXPECT_EQ(call.arg, nullptr);
}

TEST_F(GetFunctionTest, TheAnswerIsWhatWasWrittenUpToTheFirstNul) {
    struct {
        std::string written;
        std::string answer;
    } const rows[] = {
        {"", ""},
        {"text", "text"},
        {"line\n", "line\n"},
        {"Unavailable", "Unavailable"},
        {std::string("cut\0off", 7), "cut"},
        {Pattern(256), Pattern(256)},
        {Pattern(5000), Pattern(5000)},
    };
    for (auto const& row : rows) {
        call.text = row.written;
        EXPECT_EQ(InvokeLoaGetFunction(app, WriteText, "f", "a", LoaContext_Html), row.answer);
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(GetFunctionTest, WithoutACaptureTheGetFunctionIsNotCalled) {
    Platform().initializeResult = 1;
    call.text = "never written";
    EXPECT_EQ(InvokeLoaGetFunction(app, WriteText, "f", "a", LoaContext_Html), "");
    EXPECT_EQ(Reports(),
              (std::vector<Report>{
                  {"error", "src/device/loa_req.cpp", "%s: loa_initialize_loareq() failed",
                   "Init: loa_initialize_loareq() failed"},
                  {"error", "src/device/get_function.cpp", "%s: LoaReq::Init() failed",
                   "InvokeLoaGetFunction: LoaReq::Init() failed"},
              }));
    EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize",
                                       "log error src/device/loa_req.cpp: "
                                       "Init: loa_initialize_loareq() failed",
                                       "log error src/device/get_function.cpp: "
                                       "InvokeLoaGetFunction: LoaReq::Init() failed"}));
}

TEST_F(GetFunctionTest, AnExceptionOfTheGetFunctionPassesThroughAndPutsTheStreamBack) {
    EXPECT_THROW(InvokeLoaGetFunction(app, WriteAndThrow, "f", "a", LoaContext_Html),
                 std::runtime_error);
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Opened().size(), 0U);
    EXPECT_EQ(Platform().trace.back(), "loareq_set_context html");
    EXPECT_EQ(InvokeLoaGetFunction(app, WriteText, "f", "a", LoaContext_Html), call.text);
}

class TranslatePhraseTest : public DeviceTest {};

TEST_F(TranslatePhraseTest, BothFormsMakeTheSameCalls) {
    Platform().translation = "Speicher";
    Lines const calls = {"loareq_initialize",
                         "loareq_set_fnName HTTP_Translate_Phrase",
                         "loareq_set_fnArg Storage",
                         "loareq_set_context html",
                         "HTTP_Translate_Phrase Storage",
                         "loareq_free"};
    EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Html), "Speicher");
    EXPECT_EQ(Platform().trace, calls);
    Platform().trace.clear();
    EXPECT_EQ(TranslatePhrase(app, std::string("Storage"), LoaContext_Html), "Speicher");
    EXPECT_EQ(Platform().trace, calls);
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(TranslatePhraseTest, TheUnspecifiedContextIsNotPassed) {
    Platform().translation = "Speicher";
    EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Unspecified), "Speicher");
    EXPECT_EQ(Platform().trace,
              (Lines{"loareq_initialize", "loareq_set_fnName HTTP_Translate_Phrase",
                     "loareq_set_fnArg Storage", "HTTP_Translate_Phrase Storage", "loareq_free"}));
}

TEST_F(TranslatePhraseTest, ANullPhraseIsNotPassedAndAnEmptyOneIs) {
    char const* const none = nullptr;
    EXPECT_EQ(TranslatePhrase(app, none, LoaContext_Unspecified), "");
    EXPECT_EQ(TranslatePhrase(app, std::string(), LoaContext_Unspecified), "");
    EXPECT_EQ(Platform().trace,
              (Lines{"loareq_initialize", "loareq_set_fnName HTTP_Translate_Phrase",
                     "HTTP_Translate_Phrase (null)", "loareq_free", "loareq_initialize",
                     "loareq_set_fnName HTTP_Translate_Phrase", "loareq_set_fnArg ",
                     "HTTP_Translate_Phrase ", "loareq_free"}));
}

TEST_F(TranslatePhraseTest, WithoutACaptureThePhraseIsNotTranslated) {
    Platform().translation = "Speicher";
    Platform().initializeResult = -1;
    EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Html), "");
    EXPECT_EQ(TranslatePhrase(app, std::string("Storage"), LoaContext_Html), "");
    Lines const messages = {"error: Init: loa_initialize_loareq() failed",
                            "error: InvokeLoaGetFunction: LoaReq::Init() failed",
                            "error: Init: loa_initialize_loareq() failed",
                            "error: InvokeLoaGetFunction: LoaReq::Init() failed"};
    EXPECT_EQ(Platform().Messages(), messages);
    EXPECT_EQ(Reports().size(), 4U);
}

}  // namespace
