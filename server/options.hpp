// The command line of the server.
#ifndef QUILLO_SERVER_OPTIONS_HPP
#define QUILLO_SERVER_OPTIONS_HPP

#include <optional>
#include <string>
#include <vector>

namespace QuilloServer {

struct Options {
    std::string listen = "127.0.0.1:8080";
    std::vector<std::string> hosts = {};
    int workers = 2;
    int mostRequests = 10000;
    double deadlineSeconds = 30;
    double patienceSeconds = 10;
    int slowMilliseconds = 1000;
    std::string stateFolder = {};
    std::string logLevel = "warning";
    std::string logFile = {};
    bool isCheck = false;
};

// What the command line and the environment settle. When there is nothing to serve, because help
// was asked for or the line is wrong, `exitCode` is set, and what is to be said was said.
Options ParseOptions(int argc, char const* const* argv, std::optional<int>& exitCode);

}  // namespace QuilloServer

#endif
