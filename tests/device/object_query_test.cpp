// Object queries: what the service is asked, and what is made of its refusals.
#include <climits>
#include <stdexcept>

#include "device/device_fixture.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

char const file[] = "src/device/object_query.cpp";
Report const initReport = {"error", "src/device/loa_req.cpp", "%s: loa_initialize_loareq() failed",
                           "Init: loa_initialize_loareq() failed"};
Report const queryInitReport = {"error", file, "%s: LoaReq::Init() failed",
                                "GetObject: LoaReq::Init() failed"};
Report const unavailableReport = {"error", file, "%s:  object is \"Unavailable\"",
                                  "GetObject:  object is \"Unavailable\""};

class ObjectQueryTest : public DeviceTest {
protected:
    Rows rows = {{"old", "row"}, {"another"}};
};

TEST_F(ObjectQueryTest, TheServiceIsToldObjectAttributesFormatAndDefaultInThisOrder) {
    Platform().answer = "x\ty\n";
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "host", {"a", "b"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"x", "y"}}));
    EXPECT_EQ(Platform().trace,
              (Lines{"loareq_initialize", "loareq_set_object host", "loareq_set_attrs a b",
                     "loareq_set_format %1\t%2\n", "loareq_set_default_val Unavailable",
                     "format_sys_request", "loareq_free"}));
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ObjectQueryTest, TheAttributeLineIsTheNamesAndTheFormatLineTheirPositions) {
    struct {
        std::vector<std::string> attrs;
        std::string attributeLine;
        std::string formatLine;
    } const cases[] = {
        {{"name"}, "name", "%1\n"},
        {{"name", "status", "size"}, "name status size", "%1\t%2\t%3\n"},
        {{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"},
         "a b c d e f g h i j",
         "%1\t%2\t%3\t%4\t%5\t%6\t%7\t%8\t%9\t%10\n"},
        {{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"},
         "a b c d e f g h i j k l",
         "%1\t%2\t%3\t%4\t%5\t%6\t%7\t%8\t%9\t%10\t%11\t%12\n"},
        {{""}, "", "%1\n"},
        {{"", ""}, " ", "%1\t%2\n"},
        {{"a", "", "b"}, "a  b", "%1\t%2\t%3\n"},
        {{"two words", " edge "}, "two words  edge ", "%1\t%2\n"},
        {{"same", "same"}, "same same", "%1\t%2\n"},
        {{"%1", "a\tb\n"}, "%1 a\tb\n", "%1\t%2\n"},
    };
    for (auto const& row : cases) {
        Platform() = RecordingPlatform();
        Platform().answer = "";
        EXPECT_EQ(GetObject(app, ObjectType_Loa, "an object", row.attrs, rows), 0);
        EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize", "loareq_set_object an object",
                                           "loareq_set_attrs " + row.attributeLine,
                                           "loareq_set_format " + row.formatLine,
                                           "loareq_set_default_val Unavailable",
                                           "format_true_loa_request", "loareq_free"}));
    }
}

TEST_F(ObjectQueryTest, EachKindOfObjectHasItsFormatter) {
    struct {
        int type;
        Lines formatter;
        Rows rows;
    } const cases[] = {
        {0, {"format_true_loa_request"}, {{"x"}}},
        {1, {"format_con_request"}, {{"x"}}},
        {2, {"format_sys_request"}, {{"x"}}},
        {3, {}, {}},
        {-1, {}, {}},
        {INT_MAX, {}, {}},
    };
    for (auto const& row : cases) {
        Platform() = RecordingPlatform();
        Platform().answer = "x\n";
        rows = {{"old"}};
        EXPECT_EQ(GetObject(app, static_cast<ObjectType>(row.type), "o", {"a"}, rows), 0);
        EXPECT_EQ(rows, row.rows) << row.type;
        Lines expected = {"loareq_initialize", "loareq_set_object o", "loareq_set_attrs a",
                          "loareq_set_format %1\n", "loareq_set_default_val Unavailable"};
        expected.insert(expected.end(), row.formatter.begin(), row.formatter.end());
        expected.push_back("loareq_free");
        EXPECT_EQ(Platform().trace, expected);
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ObjectQueryTest, AFormatterThatFailsGivesUpTheRequest) {
    struct {
        ObjectType type;
        std::string formatter;
    } const cases[] = {
        {ObjectType_Loa, "format_true_loa_request"},
        {ObjectType_Con, "format_con_request"},
        {ObjectType_Sys, "format_sys_request"},
    };
    for (auto const& row : cases) {
        for (int result : {1, -1, INT_MIN}) {
            Platform() = RecordingPlatform();
            debugMsgs = Div();
            Platform().answer = "x\ty\n";
            Platform().formatResult = result;
            rows = {{"old"}};
            EXPECT_EQ(GetObject(app, row.type, "o", {"a", "b"}, rows), 1);
            EXPECT_EQ(rows, Rows());
            EXPECT_EQ(app.out, serverOut);
            EXPECT_EQ(Opened().size(), 0U);
            EXPECT_EQ(Reports(),
                      (std::vector<Report>{{"error", file, "%s: " + row.formatter + "() failed",
                                            "GetObject: " + row.formatter + "() failed"}}));
            ASSERT_EQ(Platform().trace.size(), 7U);
            EXPECT_EQ(Platform().trace[5], row.formatter);
        }
    }
}

TEST_F(ObjectQueryTest, WithoutACaptureNothingIsAsked) {
    Platform().initializeResult = 1;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 1);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports(), (std::vector<Report>{initReport, queryInitReport}));
    ASSERT_EQ(Platform().trace.size(), 3U);
    EXPECT_EQ(Platform().trace[0], "loareq_initialize");
}

TEST_F(ObjectQueryTest, WithoutAttributesTheRequestIsOpenedAndGivenUp) {
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {}, rows), 1);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports(), (std::vector<Report>{{"error", file, "%s:  No attributes were supplied!",
                                               "GetObject:  No attributes were supplied!"}}));
    EXPECT_EQ(Platform().trace, (Lines{"loareq_initialize",
                                       "log error src/device/object_query.cpp: "
                                       "GetObject:  No attributes were supplied!"}));
}

TEST_F(ObjectQueryTest, AFailedCaptureIsReportedBeforeTheAttributesAreLookedAt) {
    Platform().initializeResult = 1;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {}, rows), 1);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports(), (std::vector<Report>{initReport, queryInitReport}));
}

TEST_F(ObjectQueryTest, AnObjectThatCannotBeHadIsReported) {
    for (std::string const& answer :
         {std::string("Unavailable"), std::string("Unavailable\0\tx\n", 15)}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        Platform().answer = answer;
        rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Con, "o", {"a"}, rows), 1);
        EXPECT_EQ(rows, Rows());
        EXPECT_EQ(Reports(), std::vector<Report>{unavailableReport});
        ASSERT_EQ(Platform().trace.size(), 8U);
        EXPECT_EQ(Platform().trace[6], "loareq_free");
    }
}

TEST_F(ObjectQueryTest, TheTableIsEmptiedBeforeAnythingElse) {
    Rows atInitialize = {{"not looked at"}};
    Rows atFormat = atInitialize;
    Platform().onInitialize = [&](ZOV_AppData*) { atInitialize = rows; };
    Platform().onFormat = [&](ZOV_AppData*) { atFormat = rows; };
    Platform().answer = "x\n";
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 0);
    EXPECT_EQ(atInitialize, Rows());
    EXPECT_EQ(atFormat, Rows());
    EXPECT_EQ(rows, (Rows{{"x"}}));
}

TEST_F(ObjectQueryTest, TheObjectMayBeAStringOfTheTable) {
    std::string const name(100, 'o');
    rows = {{"first", name}};
    Platform().answer = "x\n";
    EXPECT_EQ(GetObject(app, ObjectType_Sys, rows[0][1], {"a"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"x"}}));
    EXPECT_EQ(Platform().trace.at(1), "loareq_set_object " + name);
}

TEST_F(ObjectQueryTest, TheAttributesMayBeARowOfTheTable) {
    std::string const first(50, 'a');
    std::string const second(50, 'b');
    rows = {{"other"}, {first, second}};
    Platform().answer = "x\ny\tz\n";
    EXPECT_EQ(GetObject(app, ObjectType_Sys, rows[0][0], rows[1], rows), 0);
    EXPECT_EQ(rows, (Rows{{"x", ""}, {"y", "z"}}));
    EXPECT_EQ(Platform().trace.at(1), "loareq_set_object other");
    EXPECT_EQ(Platform().trace.at(2), "loareq_set_attrs " + first + " " + second);
    EXPECT_EQ(Platform().trace.at(3), "loareq_set_format %1\t%2\n");
}

TEST_F(ObjectQueryTest, AnExceptionOfAFormatterPassesThroughAndPutsTheStreamBack) {
    Platform().onFormat = [](ZOV_AppData* record) {
        std::fputs("half an answer", record->out);
        throw std::runtime_error("no answer");
    };
    for (ObjectType type : {ObjectType_Loa, ObjectType_Con, ObjectType_Sys}) {
        rows = {{"old"}};
        EXPECT_THROW(GetObject(app, type, "o", {"a"}, rows), std::runtime_error);
        EXPECT_EQ(rows, Rows());
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened().size(), 0U);
    }
    Platform().onFormat = nullptr;
    Platform().answer = "x\n";
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"x"}}));
}

// The recording platform without a scripted answer.
class WorkingServiceTest : public DeviceTest {
protected:
    WorkingServiceTest() {
        Platform().objects["interfaces"] = {{"name", "mtu"}, {{"lo", "65536"}, {"eth0", "1500"}}};
        Platform().objects["none"] = {{"name"}, {}};
    }

    Rows rows = {{"old"}};
};

TEST_F(WorkingServiceTest, AnObjectsRecordsBecomeRowsInTheOrderAsked) {
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name", "mtu"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"lo", "65536"}, {"eth0", "1500"}}));
    EXPECT_EQ(GetObject(app, ObjectType_Con, "interfaces", {"mtu", "name", "mtu"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"65536", "lo", "65536"}, {"1500", "eth0", "1500"}}));
    EXPECT_EQ(GetObject(app, ObjectType_Loa, "none", {"name"}, rows), 0);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(WorkingServiceTest, AnUnknownAttributeIsUnavailableInItsColumn) {
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name", "speed"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"lo", "Unavailable"}, {"eth0", "Unavailable"}}));
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(WorkingServiceTest, AnUnknownObjectIsUnavailable) {
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "disks", {"name", "mtu"}, rows), 1);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(Reports(), std::vector<Report>{unavailableReport});
}

}  // namespace
