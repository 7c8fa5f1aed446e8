// Pages that fail, and what of them others notice.
#include <config_store.h>
#include <gtest/gtest.h>

#include <query_times.hpp>

#include <chrono>
#include <csignal>
#include <fstream>
#include <host/host.hpp>
#include <regex>
#include <set>
#include <string>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

TEST(FailingPages, ThrowIsAnsweredWithoutItsReason) {
    Server server;
    Reply const reply = Get(server.Port(), "/throw?secret=1");
    EXPECT_EQ(reply.status, 500);
    EXPECT_EQ(reply.body.find("reason"), std::string::npos);
    EXPECT_EQ(reply.body.find("half a page"), std::string::npos);
    EXPECT_NE(server.Process()
                  .ErrorLine("page 'throw' failed at GET /throw: the reason that is for the log")
                  .find(" error "),
              std::string::npos);
    EXPECT_EQ(Get(server.Port(), "/throw-number").status, 500);
    EXPECT_NE(server.Process().ErrorLine("page 'throw-number' failed at GET /throw-number: "), "");
}

TEST(FailingPages, PageThatCannotBeWrittenIsNotSent) {
    Server server;
    EXPECT_EQ(Get(server.Port(), "/break").status, 500);
    EXPECT_NE(server.Process().ErrorLine("page 'break' failed at GET /break: "), "");
}

TEST(FailingPages, WorkerSurvivesAThrow) {
    Server server({"--workers", "1"});
    std::string const worker = Get(server.Port(), "/process").body;
    EXPECT_EQ(Get(server.Port(), "/throw").status, 500);
    EXPECT_EQ(Get(server.Port(), "/process").body, worker);
}

struct CrashRow {
    char const* path;
    char const* line;
};

TEST(FailingPages, CrashEndsItsOwnConnectionAndIsLogged) {
    Server server({"--workers", "1"});
    for (CrashRow const& row :
         {CrashRow{"/abort?x=1",
                   "a worker was ended by a signal (Aborted) in page 'abort' at /abort"},
          CrashRow{"/exit", "a worker ended with exit code 3 in page 'exit' at /exit"}}) {
        std::string const worker = Get(server.Port(), "/process").body;
        EXPECT_EQ(Get(server.Port(), row.path).text, "") << row.path;
        EXPECT_NE(server.Process().ErrorLine(row.line), "") << row.path;
        std::string const next = Get(server.Port(), "/process").body;
        EXPECT_NE(next, "");
        EXPECT_NE(next, worker);
    }
}

TEST(FailingPages, CrashCostsNoOtherRequest) {
    Server server({"--workers", "1"});
    Client const half(server.Port());
    half.Send("GET /process HTTP/1.1\r\nHost: loc");
    Client const slow(server.Port());
    slow.Send(RequestText("/much?bytes=100000"));
    EXPECT_NE(slow.ReadUntil("\r\n\r\n"), "");
    Gate gate;
    Client const crashing(server.Port());
    crashing.Send(RequestText("/wait?then=abort&" + gate.Arguments()));
    gate.AwaitPage();
    Client const queued(server.Port());
    queued.Send(RequestText("/process"));
    gate.Open();
    EXPECT_EQ(crashing.ReadAll(), "");
    EXPECT_EQ(queued.Read().status, 200);
    half.Send("alhost\r\n\r\n");
    EXPECT_EQ(half.Read().status, 200);
    EXPECT_EQ(slow.ReadAll().size(), 100000U);
}

TEST(FailingPages, CrashesOneAfterAnotherDoNotWearTheServerOut) {
    Server server;
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(Get(server.Port(), "/abort").text, "");
    }
    EXPECT_EQ(Get(server.Port(), "/healthz").status, 200);
}

TEST(FailingPages, DeadlineEndsAPageThatLoops) {
    Server server({"--workers", "1", "--deadline", "0.3"});
    EXPECT_EQ(Get(server.Port(), "/loop").text, "");
    EXPECT_NE(server.Process().ErrorLine("page 'loop' overran the deadline of 300 ms at /loop"),
              "");
    EXPECT_EQ(Get(server.Port(), "/healthz").status, 200);
}

TEST(FailingPages, DeadlineIsForPagesAlone) {
    Server server({"--workers", "1", "--deadline", "0.1", "--patience", "0.5"});
    std::string const worker = Get(server.Port(), "/process").body;
    // Takes five times as long as a page may.
    EXPECT_EQ(Ask(server.Port(), "GET").status, 408);
    EXPECT_EQ(Get(server.Port(), "/process").body, worker);
}

TEST(FailingPages, SlowPageIsLoggedWithTheObjectThatTookLongest) {
    Server server({"--slow-page", "0", "--workers", "1"});
    std::regex const queried(
        "page 'object' took [0-9]+ ms \\(build;dur=[0-9.]+, query;dur=(?!0\\.000)[0-9.]+, "
        "render;dur=[0-9.]+\\): the object '(processes|nothing)' took "
        "longest, [0-9]+ ms\n");
    EXPECT_EQ(Get(server.Port(), "/object?object=processes").status, 200);
    std::string const line = server.Process().ErrorLine("page 'object' took ");
    EXPECT_TRUE(std::regex_search(line, queried)) << line;
    // The queries of one page are none of the next.
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    std::regex const quiet(
        " warning .*page 'process' took [0-9]+ ms \\(build;dur=[0-9.]+, "
        "query;dur=0.000, render;dur=[0-9.]+\\): it asked for no object\n");
    std::string const next = server.Process().ErrorLine("page 'process' took ");
    EXPECT_TRUE(std::regex_search(next, quiet)) << next;
}

TEST(QueryTimes, AreAddedUpAndTheLongestOneIsNamed) {
    using std::chrono::nanoseconds;
    QuilloServer::QueryTimes times;
    EXPECT_STREQ(times.object, "");
    times.Add("first", nanoseconds(0));
    EXPECT_STREQ(times.object, "first");
    times.Add("long", nanoseconds(5));
    times.Add("short", nanoseconds(4));
    times.Add("as long", nanoseconds(5));
    EXPECT_STREQ(times.object, "long");
    EXPECT_EQ(times.longest, nanoseconds(5));
    EXPECT_EQ(times.all, nanoseconds(14));
    times.Add(std::string(100, 'x').c_str(), nanoseconds(6));
    EXPECT_EQ(times.object, std::string(63, 'x'));
    times.Add("y", nanoseconds(7));
    EXPECT_STREQ(times.object, "y");
}

TEST(FailingPages, KilledWorkerIsReplaced) {
    Server server({"--workers", "1"});
    std::string const worker = Get(server.Port(), "/process").body;
    kill(std::stoi(worker), SIGKILL);
    EXPECT_NE(server.Process().ErrorLine("a worker was ended by a signal (Killed) between"), "");
    EXPECT_NE(Get(server.Port(), "/process").body, worker);
}

// The value that is stored, as another program sees it.
std::string Stored() {
    int value = 0;
    int const result = Cfg_GetBoolAttrValue("lasting", &value);
    return std::to_string(result) + (value != 0 ? " TRUE" : " FALSE");
}

// Returns when the value has become `value`.
void AwaitStored(std::string const& value) {
    while (Stored() != value) {
    }
}

TEST(FailingPages, WorkerThatIsKilledWhileItStoresLeavesTheOldValueOrTheNew) {
    Server server({"--workers", "1", "--deadline", "3600"});
    QuilloHost::SetStateFolder(server.Folder() + "/state");
    ASSERT_TRUE(QuilloHost::DeclareSetting("lasting", "FALSE"));
    for (int round = 0; round < 10; ++round) {
        std::string const worker = Get(server.Port(), "/process").body;
        Gate gate;
        Client const storing(server.Port());
        storing.Send(RequestText("/wait?then=store&" + gate.Arguments()));
        gate.AwaitPage();
        gate.Open();
        // It stores one value after another by now.
        AwaitStored("0 TRUE");
        AwaitStored("0 FALSE");
        kill(std::stoi(worker), SIGKILL);
        EXPECT_EQ(storing.ReadAll(), "");
        std::string const left = Get(server.Port(), "/setting").body;
        EXPECT_TRUE(left == "0 TRUE" || left == "0 FALSE") << left;
        EXPECT_EQ(Stored(), left);
        // Nor does it leave a lock.
        for (char const* value : {"TRUE", "FALSE"}) {
            std::string const changed =
                Get(server.Port(), "/setting?value=" + std::string(value)).body;
            EXPECT_EQ(changed, "0 " + std::string(value));
            EXPECT_EQ(Stored(), changed);
        }
    }
}

// The supervisor's first process.
int LobbyOf(Server& server) {
    std::string const id = std::to_string(server.Process().Id());
    int lobby = 0;
    std::ifstream("/proc/" + id + "/task/" + id + "/children") >> lobby;
    return lobby;
}

TEST(Lobby, IsMadeAnewWhenItDies) {
    Server server({"--workers", "1"});
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    ASSERT_GT(LobbyOf(server), 0);
    kill(LobbyOf(server), SIGKILL);
    EXPECT_NE(server.Process().ErrorLine("the lobby was ended by a signal (Killed)"), "");
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    Client const half(server.Port());
    half.Send("GET /process HTTP/1.1\r\nHost: loc");
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    half.Send("alhost\r\n\r\n");
    EXPECT_EQ(half.Read().status, 200);
}

TEST(Lobby, IsNotNeededToStop) {
    Server server;
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    ASSERT_GT(LobbyOf(server), 0);
    kill(LobbyOf(server), SIGKILL);
    EXPECT_NE(server.Process().ErrorLine("the lobby was ended by a signal (Killed)"), "");
    EXPECT_EQ(server.Stop(), 0);
}

TEST(Recycling, WorkerIsMadeAnewAfterItsRequests) {
    Server server({"--workers", "1", "--max-requests", "3"});
    for (int round = 0; round < 4; ++round) {
        std::string const worker = Get(server.Port(), "/process").body;
        EXPECT_EQ(Get(server.Port(), "/healthz").status, 200);
        EXPECT_EQ(Get(server.Port(), "/process").body, worker);
        EXPECT_NE(Get(server.Port(), "/process").body, worker);
        EXPECT_EQ(Get(server.Port(), "/nothing").status, 404);
        EXPECT_EQ(Get(server.Port(), "/nothing").status, 404);
    }
}

TEST(Recycling, WaitsForThoseThatReadSlowly) {
    Server server({"--workers", "1", "--max-requests", "1"});
    Client const slow(server.Port());
    slow.Send(RequestText("/much?bytes=6000000"));
    EXPECT_EQ(ParseReply(slow.ReadUntil("\r\n\r\n")).status, 200);
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    EXPECT_EQ(slow.ReadAll().size(), 6000000U);
}

TEST(Recycling, ZeroIsNever) {
    Server server({"--workers", "1", "--max-requests", "0"});
    std::set<std::string> workers;
    for (int i = 0; i < 50; ++i) {
        workers.insert(Get(server.Port(), "/process").body);
    }
    EXPECT_EQ(workers.size(), 1U);
}

}  // namespace
