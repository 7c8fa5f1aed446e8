// Services that do not behave: the capture channel still ends, and leaves nothing behind.
#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>

#include "device/device_fixture.hpp"
#include "support/flushed_text.hpp"
#include "support/hang_guard.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

class ServiceTroubleTest : public DeviceTest {
protected:
    // A pipe of `capacity` bytes. It makes the service wait when it is full, or refuses the write.
    static void HavePipe(std::size_t capacity, bool waits) {
        Platform().onInitialize = [capacity, waits](ZOV_AppData* request) {
            int const fd = fileno(request->out);
            EXPECT_GE(fcntl(fd, F_SETPIPE_SZ, static_cast<int>(capacity)),
                      static_cast<int>(capacity));
            EXPECT_EQ(fcntl(fd, F_SETFL, waits ? 0 : O_NONBLOCK), 0);
        };
    }

    std::string Ask(std::string const& answer, Flush flush) {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 0);
        WriteFlushed(app.out, answer, flush);
        return request.Finish();
    }
};

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

constexpr std::size_t capacities[] = {4096, 65536, mebibyte};

TEST_F(ServiceTroubleTest, AnAnswerThatFitsIsWhole) {
    for (std::size_t const capacity : capacities) {
        HavePipe(capacity, true);
        for (std::size_t const size : {std::size_t{0}, std::size_t{1}, std::size_t{255},
                                       std::size_t{256}, capacity - 1, capacity}) {
            for (Flush const flush : everyFlush) {
                HangGuard const guard;
                EXPECT_TRUE(Ask(LinesOf(size), flush) == LinesOf(size))
                    << size << " bytes, pipe of " << capacity << ", " << static_cast<int>(flush);
                EXPECT_EQ(app.out, serverOut);
            }
        }
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

// A service that writes more than the pipe takes waits for ever, unless it has told the pipe not to
// make it wait.
TEST_F(ServiceTroubleTest, AnAnswerThatDoesNotFitIsCutShortWhereTheServiceDoesNotWait) {
    for (std::size_t const capacity : capacities) {
        HavePipe(capacity, false);
        for (std::size_t const size : {capacity + 1, capacity + 65, 2 * mebibyte}) {
            std::string const answer = LinesOf(size);
            for (Flush const flush : everyFlush) {
                HangGuard const guard;
                EXPECT_TRUE(Ask(answer, flush) == answer.substr(0, capacity))
                    << size << " bytes, pipe of " << capacity << ", " << static_cast<int>(flush);
                EXPECT_EQ(app.out, serverOut);
            }
        }
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ServiceTroubleTest, AFullPipeThatIsGivenUpIsEmptiedByNobody) {
    HavePipe(4096, false);
    for (Flush const flush : everyFlush) {
        LoaReq request(app);
        EXPECT_EQ(request.Init(), 0);
        WriteFlushed(app.out, LinesOf(std::size_t{3} * 4096), flush);
    }
    EXPECT_EQ(Opened(), std::set<int>());
}

TEST_F(ServiceTroubleTest, AServiceThatEndsEarlyHasAnsweredWhatItWrote) {
    struct {
        char const* written;
        Rows rows;
    } const table[] = {{"", {}}, {"lo", {{"lo", ""}}}, {"lo\t1\net", {{"lo", "1"}, {"et", ""}}}};
    for (auto const& row : table) {
        Platform().answer = row.written;
        Rows rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name", "mtu"}, rows), 0);
        EXPECT_EQ(rows, row.rows);
        EXPECT_EQ(app.out, serverOut);
    }
}

TEST_F(ServiceTroubleTest, AFormatterThatThrowsLeavesNoRowsAndTheServersStream) {
    Platform().onFormat = [](ZOV_AppData* request) {
        std::fputs("half an answer", request->out);
        throw std::runtime_error("service");
    };
    for (ObjectType const type : {ObjectType_Loa, ObjectType_Con, ObjectType_Sys}) {
        Rows rows = {{"old"}};
        EXPECT_THROW(GetObject(app, type, "interfaces", {"name"}, rows), std::runtime_error);
        EXPECT_EQ(rows, Rows());
        EXPECT_EQ(app.out, serverOut);
        EXPECT_EQ(Opened(), std::set<int>());
    }
    Platform().onFormat = nullptr;
    Platform().answer = "lo\n";
    Rows rows;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows), 0);
    EXPECT_EQ(rows, (Rows{{"lo"}}));
}

void ThrowHalfWay(ZOV_AppData* request, char*) {
    std::fputs("half an answer", request->out);
    throw std::runtime_error("service");
}

TEST_F(ServiceTroubleTest, AGetFunctionThatThrowsLeavesTheServersStream) {
    EXPECT_THROW(InvokeLoaGetFunction(app, ThrowHalfWay, "f", "a", LoaContext_Html),
                 std::runtime_error);
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Opened(), std::set<int>());
    Platform().translation = "Speicher";
    EXPECT_EQ(TranslatePhrase(app, "Storage", LoaContext_Html), "Speicher");
}

void CloseDescriptor(ZOV_AppData* request, char* flushed) {
    std::fputs(flushed, request->out);
    std::fflush(request->out);
    std::fputs("lost", request->out);
    EXPECT_EQ(close(fileno(request->out)), 0);
}

TEST_F(ServiceTroubleTest, AServiceThatClosesItsDescriptorHasAnsweredWhatItFlushed) {
    Platform().answer = "";
    struct {
        std::string flushed;
        Rows rows;
    } table[] = {{"", {}}, {"lo\n", {{"lo"}}}, {"lo\neth0\n", {{"lo"}, {"eth0"}}}};
    for (auto& row : table) {
        Platform().onFormat = [&](ZOV_AppData* request) {
            CloseDescriptor(request, row.flushed.data());
        };
        EXPECT_EQ(
            InvokeLoaGetFunction(app, CloseDescriptor, "f", row.flushed.c_str(), LoaContext_Html),
            row.flushed);
        EXPECT_EQ(app.out, serverOut);
        Rows rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows), 0);
        EXPECT_EQ(rows, row.rows);
        EXPECT_EQ(app.out, serverOut);
    }
    EXPECT_EQ(Reports(), std::vector<Report>());
}

TEST_F(ServiceTroubleTest, ARequestThatIsGivenUpBehindAClosedDescriptorLeavesNothing) {
    Platform().onFormat = [](ZOV_AppData* request) { EXPECT_EQ(close(fileno(request->out)), 0); };
    Platform().answer = "lost";
    Platform().formatResult = 1;
    Rows rows = {{"old"}};
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "interfaces", {"name"}, rows), 1);
    EXPECT_EQ(rows, Rows());
    EXPECT_EQ(app.out, serverOut);
    EXPECT_EQ(Opened(), std::set<int>());
}

}  // namespace
