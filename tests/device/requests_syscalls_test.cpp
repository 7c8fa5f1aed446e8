// Object queries and get-functions whose capture channel the system refuses.
#include <cerrno>
#include <cstring>

#include "device/device_fixture.hpp"
#include "device/system_calls.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

Report LoaReqReport(std::string const& format, std::string const& message) {
    return {"error", "src/device/loa_req.cpp", format, message};
}

void NeverCalled(ZOV_AppData*, char*) {
    ADD_FAILURE();
}

class RequestsSyscallsTest : public DeviceTest {
protected:
    // Has every kind of request made, each with a channel that does not open.
    void ExpectRefused(Report const& refusal) {
        Rows rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 1);
        EXPECT_EQ(rows, Rows());
        EXPECT_EQ(app.out, serverOut);
        rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {}, rows), 1);
        EXPECT_EQ(rows, Rows());
        EXPECT_EQ(InvokeLoaGetFunction(app, NeverCalled, "f", "a", LoaContext_Html), "");
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Html), "");

        Report const query = {"error", "src/device/object_query.cpp", "%s: LoaReq::Init() failed",
                              "GetObject: LoaReq::Init() failed"};
        Report const getFunction = {"error", "src/device/get_function.cpp",
                                    "%s: LoaReq::Init() failed",
                                    "InvokeLoaGetFunction: LoaReq::Init() failed"};
        EXPECT_EQ(Reports(), (std::vector<Report>{refusal, query, refusal, query, refusal,
                                                  getFunction, refusal, getFunction}));
        for (std::string const& line : Platform().trace) {
            EXPECT_EQ(line.find("loareq"), std::string::npos) << line;
        }
    }

    SystemCalls calls;
};

TEST_F(RequestsSyscallsTest, APipeThatIsRefusedFailsEveryRequest) {
    calls.pipeError = EMFILE;
    ExpectRefused(LoaReqReport("%s: pipe() failed - %s",
                               std::string("Init: pipe() failed - ") + std::strerror(EMFILE)));
}

TEST_F(RequestsSyscallsTest, AStreamThatIsRefusedFailsEveryRequest) {
    calls.fdopenError = ENOMEM;
    ExpectRefused(LoaReqReport("%s: fdopen() failed - %s",
                               std::string("Init: fdopen() failed - ") + std::strerror(ENOMEM)));
}

TEST_F(RequestsSyscallsTest, ATruncatedAnswerIsReadLikeAnyOther) {
    Platform().answer = "x\t" + Pattern(300) + "\n";
    calls.reads = {{ReadStep::Real, 256}, {ReadStep::Fails, EIO}};
    Rows rows;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a", "b", "c"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"x", Pattern(254), ""}}));
    std::string const readFailed = std::string("error: Finish: read() failed - ") +
                                   std::strerror(EIO) + " (truncating result)";
    EXPECT_EQ(
        Platform().Messages(),
        (Lines{readFailed, "warn: GetObject: Missing \\n at end of result string",
               "warn: GetObject:  Got back unexpected number of attributes: 2 instead of 3"}));
}

TEST_F(RequestsSyscallsTest, AnAnswerTruncatedToTheDefaultValueIsTheDefaultValue) {
    Platform().answer = "Unavailable\n";
    calls.reads = {{ReadStep::Real, 11}};
    Rows rows;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 1);
    EXPECT_EQ(Platform().Messages(), Lines{"error: GetObject:  object is \"Unavailable\""});
}

TEST_F(RequestsSyscallsTest, AnUnreadableAnswerGivesNoRows) {
    Platform().answer = "x\n";
    calls.reads = {{ReadStep::Fails, EINTR}};
    Rows rows = {{"old"}};
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 0);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports().size(), 1U);
}

TEST_F(RequestsSyscallsTest, ATranslationIsTruncatedLikeAnyAnswer) {
    Platform().translation = Pattern(600);
    calls.reads = {{ReadStep::Real, 256}, {ReadStep::Claims, 300}};
    EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Html), Pattern(256));
    EXPECT_EQ(Platform().Messages(), Lines{"error: Finish: Huh?  300 > 256"});
}

}  // namespace
