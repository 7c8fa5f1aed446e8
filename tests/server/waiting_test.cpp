// Who waits for whom. Each test ends only when what it says holds: otherwise it waits until it is
// ended as a whole.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

typedef std::vector<std::unique_ptr<Client>> Clients;

// That many connections, each of which has sent `text`.
Clients Connected(int port, std::size_t count, std::string const& text) {
    Clients clients;
    for (std::size_t i = 0; i < count; ++i) {
        clients.push_back(std::make_unique<Client>(port));
        clients.back()->Send(text);
    }
    return clients;
}

TEST(Waiting, QuickPagesDoNotWaitBehindASlowOne) {
    Server server({"--workers", "2"});
    Gate gate;
    Client const slow(server.Port());
    slow.Send(RequestText("/wait?" + gate.Arguments()));
    gate.AwaitPage();
    // All connect before any of them is answered.
    for (auto const& quick : Connected(server.Port(), 40, RequestText("/process"))) {
        EXPECT_EQ(quick->Read().status, 200);
    }
    gate.Open();
    EXPECT_EQ(slow.Read().body, "waited");
}

TEST(Waiting, RequestsInTwoPiecesDoNotWaitBehindASlowPage) {
    Server server({"--workers", "2"});
    std::string const head = RequestText("/process");
    Clients const before = Connected(server.Port(), 20, head.substr(0, 9));
    // Some process of the server has them by now.
    EXPECT_EQ(Get(server.Port(), "/healthz").status, 200);
    Gate gate;
    Client const slow(server.Port());
    slow.Send(RequestText("/wait?" + gate.Arguments()));
    gate.AwaitPage();
    Clients const after = Connected(server.Port(), 20, head.substr(0, 9));
    for (Clients const* clients : {&before, &after}) {
        for (auto const& client : *clients) {
            client->Send(head.substr(9));
            EXPECT_EQ(client->Read().status, 200);
        }
    }
    gate.Open();
    EXPECT_EQ(slow.Read().body, "waited");
}

TEST(Waiting, RequestsWaitForAWorkerThatIsFree) {
    Server server({"--workers", "1"});
    Gate gate;
    Client const slow(server.Port());
    slow.Send(RequestText("/wait?" + gate.Arguments()));
    gate.AwaitPage();
    Clients const waiting = Connected(server.Port(), 40, RequestText("/process"));
    gate.Open();
    EXPECT_EQ(slow.Read().body, "waited");
    for (auto const& client : waiting) {
        EXPECT_EQ(client->Read().status, 200);
    }
}

TEST(Waiting, ClientsThatSendSlowlyHoldNoWorker) {
    Server server({"--workers", "1"});
    Clients const silent = Connected(server.Port(), 50, "");
    Clients const heads = Connected(server.Port(), 200, "GET /process HTTP/1.1\r\nHost: l");
    std::string const form = FormText("/process", "a=1&b=2");
    Clients const forms = Connected(server.Port(), 200, form.substr(0, form.size() - 3));
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    for (auto const& client : heads) {
        client->Send("ocalhost\r\n\r\n");
        EXPECT_EQ(client->Read().status, 200);
    }
    for (auto const& client : forms) {
        client->Send("b=2");
        EXPECT_EQ(client->Read().status, 403);
    }
}

TEST(Waiting, ClientsThatReadSlowlyHoldNoWorker) {
    Server server({"--workers", "1"});
    // More than the system keeps for a client that does not read.
    std::size_t const size = 6000000;
    Clients slow;
    for (int i = 0; i < 20; ++i) {
        slow.push_back(std::make_unique<Client>(server.Port()));
        slow.back()->Send(RequestText("/much?bytes=" + std::to_string(size)));
    }
    for (auto const& client : slow) {
        EXPECT_EQ(ParseReply(client->ReadUntil("\r\n\r\n")).status, 200);
    }
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    EXPECT_EQ(slow.front()->ReadAll().size(), size);
}

std::size_t DescriptorsOf(std::string const& process) {
    std::filesystem::directory_iterator const open("/proc/" + process + "/fd");
    return static_cast<std::size_t>(std::distance(begin(open), end(open)));
}

TEST(Waiting, RequestsLeaveNoDescriptorBehind) {
    Server server({"--workers", "1", "--max-requests", "0"});
    std::string const worker = Get(server.Port(), "/process").body;
    std::size_t const before = DescriptorsOf(worker);
    for (int i = 0; i < 50; ++i) {
        Get(server.Port(), "/object?object=host");
        Get(server.Port(), "/throw");
        Get(server.Port(), "/nothing");
        Ask(server.Port(), FormText("/echo", "a=1"));
        Client const gone(server.Port());
        gone.Send(RequestText("/much?bytes=6000000"));
    }
    EXPECT_EQ(Get(server.Port(), "/process").body, worker);
    // The last connections may be about to be closed.
    EXPECT_LT(DescriptorsOf(worker), before + 50);
}

TEST(Waiting, TooManySlowClientsEndTheOldest) {
    // One worker: of two, either may be the later one to bring its clients to the lobby.
    Server server({"--patience", "3600", "--workers", "1"});
    Client const oldest(server.Port());
    oldest.Send("GET");
    Clients const rest = Connected(server.Port(), 820, "GET");
    EXPECT_EQ(oldest.Read().status, 408);
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
}

}  // namespace
