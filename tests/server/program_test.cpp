// The server as a program: options, exit codes, signals and its log.
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "server/http_client.hpp"
#include "server/server_process.hpp"

namespace {

struct Outcome {
    int exitCode;
    std::string output;
    std::string errors;
};

Outcome RunToEnd(std::vector<std::string> const& arguments,
                 std::vector<std::string> const& environment = {}) {
    Program program(arguments, environment);
    std::string const output = program.Output();
    std::string const errors = program.Errors();
    return {program.Wait(), output, errors};
}

std::string FileText(std::string const& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

bool Holds(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

bool HasIpv6() {
    QuilloServer::Descriptor const attempt(socket(AF_INET6, SOCK_STREAM, 0));
    sockaddr_in6 address = {};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    return bind(attempt.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
}

TEST(Program, WrongCommandLineIsAnsweredWithTheUsage) {
    struct Row {
        std::vector<std::string> arguments;
        char const* message;
    };
    for (Row const& row : {
             Row{{"--bogus"}, "The following argument was not expected: --bogus"},
             Row{{"status"}, "The following argument was not expected: status"},
             Row{{"--listen", "8080"},
                 "--listen: '8080' is not ADDRESS:PORT or [IPV6-ADDRESS]:PORT"},
             Row{{"--listen", "::1:8080"}, "--listen: '::1:8080' is not"},
             Row{{"--listen", "[]:8080"}, "--listen: '[]:8080' is not"},
             Row{{"--listen", ":8080"}, "--listen: ':8080' is not"},
             Row{{"--listen", "localhost:65536"}, "--listen: 'localhost:65536' is not"},
             Row{{"--listen", "localhost:"}, "--listen: 'localhost:' is not"},
             Row{{"--host", ":80"}, "--host: ':80' is no name of a host"},
             Row{{"--host", "a/b"}, "--host: 'a/b' is no name of a host"},
             Row{{"--host", "m\u00fcller"}, "--host: 'm\u00fcller' is no name of a host"},
             Row{{"--workers", "0"}, "--workers: '0' is not a whole number from 1 to 64\n"},
             Row{{"--workers", "65"}, "--workers: '65' is not a whole number from 1 to 64\n"},
             Row{{"--workers", "1.5"}, "--workers: '1.5' is not a whole number from 1 to 64\n"},
             Row{{"--workers", ""}, "--workers: '' is not a whole number from 1 to 64\n"},
             Row{{"--max-requests", "-1"},
                 "--max-requests: '-1' is not a whole number from 0 to 1000000000\n"},
             Row{{"--max-requests", "99999999999"}, "--max-requests: '99999999999' is not"},
             Row{{"--deadline", "0"}, "--deadline: '0' is not a number from 0.1 to 3600\n"},
             Row{{"--deadline", "nan"}, "--deadline: 'nan' is not a number from 0.1 to 3600\n"},
             Row{{"--deadline", "inf"}, "--deadline: 'inf' is not a number"},
             Row{{"--deadline", "5s"}, "--deadline: '5s' is not a number"},
             Row{{"--patience", "0"}, "--patience: '0' is not a number from 0.1 to 3600\n"},
             Row{{"--slow-page", "-1"},
                 "--slow-page: '-1' is not a whole number from 0 to 3600000"},
             Row{{"--log-level", "loud"}, "--log-level: loud not in {error,warning,info}"},
         }) {
        // A line that is taken for a good one serves nothing.
        std::vector<std::string> arguments = {"--check"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        Outcome const outcome = RunToEnd(arguments);
        EXPECT_EQ(outcome.exitCode, 2) << row.message;
        EXPECT_EQ(outcome.output, "") << row.message;
        EXPECT_TRUE(Holds(outcome.errors, std::string("quillo-serve: ") + row.message))
            << outcome.errors;
        EXPECT_TRUE(
            Holds(outcome.errors, "Usage: quillo-serve [OPTIONS]\nquillo-serve --help lists"))
            << row.message;
    }
}

TEST(Program, HelpNamesEveryOptionItsVariableAndItsDefault) {
    Outcome const outcome = RunToEnd({"--help"}, {"XDG_STATE_HOME=/nowhere"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, "");
    for (char const* part :
         {"--listen TEXT=127.0.0.1:8080 (Env:QUILLO_LISTEN)", "(Env:QUILLO_HOST)",
          "=2 (Env:QUILLO_WORKERS)", "=10000 (Env:QUILLO_MAX_REQUESTS)",
          "=30 (Env:QUILLO_DEADLINE)", "=10 (Env:QUILLO_PATIENCE)", "=1000 (Env:QUILLO_SLOW_PAGE)",
          "(Env:QUILLO_STATE_DIR)", "=warning (Env:QUILLO_LOG_LEVEL)",
          "--log-file TEXT (Env:QUILLO_LOG_FILE)", "--check", "--version", "Exit codes: 0 "}) {
        EXPECT_TRUE(Holds(outcome.output, part)) << part;
    }
    std::istringstream lines(outcome.output);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(Program, VersionIsPrinted) {
    Outcome const outcome = RunToEnd({"--version"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "quillo-serve " QUILLO_VERSION "\n");
}

TEST(Program, EnvironmentStandsInForOptions) {
    TempFolder const folder;
    Program program({"--listen", "127.0.0.1:0"},
                    {"QUILLO_LISTEN=wrong", "QUILLO_STATE_DIR=" + folder.path + "/state",
                     "QUILLO_HOST=device,device.example", "QUILLO_WORKERS=1"});
    std::string const line = program.OutputLine();
    int const port = std::stoi(line.substr(line.rfind(':') + 1));
    EXPECT_EQ(Ask(port, "GET /process HTTP/1.1\r\nHost: device.example\r\n\r\n").status, 200);
    EXPECT_EQ(std::filesystem::status(folder.path + "/state").permissions(),
              std::filesystem::perms::owner_all);
}

TEST(Program, WrongEnvironmentVariableIsNamed) {
    Outcome const outcome = RunToEnd({}, {"QUILLO_WORKERS=none"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(Holds(outcome.errors,
                      "quillo-serve: QUILLO_WORKERS: 'none' is not a whole number from 1 to 64\n"))
        << outcome.errors;
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{"--workers=some"}, {"--workers", "some"}}) {
        Outcome const given = RunToEnd(arguments, {"QUILLO_WORKERS=2"});
        EXPECT_TRUE(Holds(given.errors, "quillo-serve: --workers: 'some' is not")) << given.errors;
    }
}

TEST(Program, AddressIsPrinted) {
    Server server;
    EXPECT_EQ(server.Address(),
              "quillo-serve: http://127.0.0.1:" + std::to_string(server.Port()) + "/\n");
    EXPECT_EQ(Get(server.Port(), "/healthz").status, 200);
}

TEST(Program, ListensOnIpv6) {
    if (!HasIpv6()) {
        GTEST_SKIP() << "this machine has no IPv6";
    }
    Server server({}, "[::1]");
    EXPECT_EQ(server.Address(),
              "quillo-serve: http://[::1]:" + std::to_string(server.Port()) + "/\n");
    Client const client(server.Port(), true);
    client.Send("GET /healthz HTTP/1.1\r\nHost: [::1]\r\n\r\n");
    EXPECT_EQ(client.Read().status, 200);
}

TEST(Program, TakenPortIsNamed) {
    Server server;
    std::string const address = "127.0.0.1:" + std::to_string(server.Port());
    Outcome const outcome = RunToEnd({"--listen", address, "--state-dir", server.Folder()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "quillo-serve: cannot listen on " + address +
                                  ": the port is taken by another program; name another one with "
                                  "--listen, or 0 for any that is free\n");
}

TEST(Program, AddressOfAnotherMachineIsNamed) {
    Outcome const outcome = RunToEnd({"--listen", "192.0.2.1:0"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors,
              "quillo-serve: cannot listen on 192.0.2.1:0: this machine has no such address; name "
              "another one with --listen\n");
}

TEST(Program, FoldersThatCannotBeWrittenAreNamed) {
    TempFolder const folder;
    folder.Write("file", "");
    std::string const below = folder.path + "/file/below";
    Outcome const state = RunToEnd({"--listen", "127.0.0.1:0", "--state-dir", below});
    EXPECT_EQ(state.exitCode, 1);
    EXPECT_EQ(state.output, "");
    EXPECT_EQ(state.errors, "quillo-serve: the state folder " + below +
                                " cannot be written: Not a directory; name another one with "
                                "--state-dir\n");
    Outcome const procfs = RunToEnd({"--listen", "127.0.0.1:0", "--state-dir", "/proc"});
    EXPECT_EQ(procfs.exitCode, 1);
    EXPECT_TRUE(Holds(procfs.errors, "the state folder /proc cannot be written: "));
    Outcome const log =
        RunToEnd({"--listen", "127.0.0.1:0", "--state-dir", folder.path, "--log-file", below});
    EXPECT_EQ(log.exitCode, 1);
    EXPECT_EQ(log.errors, "quillo-serve: the log file " + below +
                              " cannot be written: Not a directory; name another one with "
                              "--log-file\n");
}

TEST(Program, CheckTellsWhetherTheSettingsAreInOrder) {
    Server server;
    std::string const taken = "127.0.0.1:" + std::to_string(server.Port());
    // A server that runs does not make its own settings wrong.
    Outcome const good = RunToEnd({"--check", "--listen", taken, "--state-dir", server.Folder()});
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_EQ(good.output, "quillo-serve: the settings are in order\n");
    EXPECT_EQ(good.errors, "");
    Outcome const foreign =
        RunToEnd({"--check", "--listen", "192.0.2.1:80", "--state-dir", server.Folder()});
    EXPECT_EQ(foreign.exitCode, 1);
    EXPECT_TRUE(Holds(foreign.errors, "cannot listen on 192.0.2.1:80: ")) << foreign.errors;
    EXPECT_EQ(RunToEnd({"--check", "--state-dir", "/proc"}).exitCode, 1);
    EXPECT_EQ(
        RunToEnd({"--check", "--state-dir", server.Folder(), "--log-file", "/proc/none"}).exitCode,
        1);
    EXPECT_EQ(RunToEnd({"--check", "--workers", "0"}).exitCode, 2);
}

TEST(Program, AnswersWhatHasArrivedWhenItIsStopped) {
    for (int const number : {SIGTERM, SIGINT}) {
        Server server({"--workers", "1"});
        Gate gate;
        Client const slow(server.Port());
        slow.Send(RequestText("/wait?" + gate.Arguments()));
        gate.AwaitPage();
        Client const half(server.Port());
        half.Send("GET");
        std::vector<std::unique_ptr<Client>> queued;
        for (int i = 0; i < 5; ++i) {
            queued.push_back(std::make_unique<Client>(server.Port()));
            queued.back()->Send(RequestText("/much?bytes=7"));
        }
        server.Process().Signal(number);
        gate.Open();
        EXPECT_EQ(slow.Read().body, "waited");
        for (auto const& client : queued) {
            EXPECT_EQ(client->Read().body, "xxxxxxx");
        }
        EXPECT_EQ(half.Read().status, 503);
        EXPECT_EQ(server.Process().Wait(), 0);
        EXPECT_THROW(Client(server.Port()), std::system_error);
    }
}

TEST(Program, TellsThoseThatAreHalfWayWhenItIsStopped) {
    Server server;
    Client const half(server.Port());
    half.Send("GET /process HTTP/1.1\r\n");
    // Later ones are answered, so that one is in the lobby.
    Client const later(server.Port());
    later.Send(RequestText("/process"));
    EXPECT_EQ(later.Read().status, 200);
    EXPECT_EQ(server.Stop(), 0);
    EXPECT_EQ(half.Read().status, 503);
}

TEST(Program, StopsWhenEveryRequestMakesAWorkerAnew) {
    Server server({"--workers", "1", "--max-requests", "1"});
    Gate gate;
    Client const slow(server.Port());
    slow.Send(RequestText("/wait?" + gate.Arguments()));
    gate.AwaitPage();
    Client const queued(server.Port());
    queued.Send(RequestText("/much?bytes=7"));
    server.Process().Signal(SIGTERM);
    gate.Open();
    EXPECT_EQ(slow.Read().body, "waited");
    EXPECT_EQ(queued.Read().body, "xxxxxxx");
    EXPECT_EQ(server.Process().Wait(), 0);
}

TEST(Program, TakesNoMoreOnceItIsStopped) {
    Server server({"--workers", "1"});
    Client const half(server.Port());
    half.Send("GET");
    EXPECT_EQ(Get(server.Port(), "/process").status, 200);
    Gate gate;
    Client const slow(server.Port());
    slow.Send(RequestText("/wait?" + gate.Arguments()));
    gate.AwaitPage();
    server.Process().Signal(SIGTERM);
    EXPECT_EQ(half.Read().status, 503);
    // One more is taken; while it waits, the next one is not.
    Client const queued(server.Port());
    queued.Send(RequestText("/process"));
    LateClient const late(server.Port());
    gate.Open();
    EXPECT_EQ(slow.Read().body, "waited");
    EXPECT_EQ(queued.Read().status, 200);
    EXPECT_EQ(server.Process().Wait(), 0);
    EXPECT_EQ(late.Outcome(), ECONNREFUSED);
}

TEST(Program, LeavesNoProcessBehindWhenItIsKilled) {
    Server server;
    Client const half(server.Port());
    half.Send("GET");
    server.Process().Signal(SIGKILL);
    EXPECT_EQ(server.Process().Wait(), 1000 + SIGKILL);
    // Standard error ends with the last process that has it.
    EXPECT_EQ(server.Process().Errors(), "");
}

TEST(Program, WritesItsLogToAFile) {
    TempFolder const folder;
    std::string const log = folder.path + "/log";
    Server server({"--log-file", log, "--workers", "1"});
    EXPECT_EQ(Get(server.Port(), "/throw").status, 500);
    EXPECT_TRUE(Holds(FileText(log), "page 'throw' failed")) << FileText(log);
    EXPECT_EQ(server.Stop(), 0);
    EXPECT_EQ(server.Process().Errors(), "");
}

TEST(Program, OpensItsLogAnew) {
    TempFolder const folder;
    std::string const log = folder.path + "/log";
    Server server({"--log-file", log, "--workers", "1", "--max-requests", "0"});
    EXPECT_EQ(Get(server.Port(), "/throw").status, 500);
    std::filesystem::rename(log, log + ".1");
    std::string const old = FileText(log + ".1");
    server.Process().Signal(SIGHUP);
    // The supervisor tells the worker; the worker that logs to the new file was told.
    do {
        EXPECT_EQ(Get(server.Port(), "/throw").status, 500);
    } while (!Holds(FileText(log), "page 'throw' failed"));
    EXPECT_EQ(FileText(log + ".1").compare(0, old.size(), old), 0);
}

TEST(Program, LogLevelLeavesOutWhatMattersLess) {
    TempFolder const folder;
    for (auto const& [level, isShown] : {std::pair("info", true), std::pair("error", false)}) {
        std::string const log = folder.path + "/" + level;
        Server server({"--log-file", log, "--log-level", level, "--slow-page", "0"});
        EXPECT_EQ(Get(server.Port(), "/process").status, 200);
        EXPECT_EQ(Holds(FileText(log), "page 'process' took"), isShown) << level;
        EXPECT_EQ(Holds(FileText(log), " info src/text/uri_args.cpp"), isShown) << level;
    }
}

}  // namespace
