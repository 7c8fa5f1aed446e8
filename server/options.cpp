#include "options.hpp"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

#include "host_names.hpp"
#include "listener.hpp"
#include "state_folder.hpp"

namespace QuilloServer {
namespace {

std::string IsEndpoint(std::string const& text) {
    try {
        ParseEndpoint(text);
        return "";
    } catch (std::exception const& error) {
        return error.what();
    }
}

std::string IsHost(std::string const& text) {
    return GivenHostName(text).empty() ? "'" + text + "' is no name of a host" : "";
}

char const footer[] =
    "An option on the command line goes before its environment variable.\n"
    "\n"
    "For browsers on other machines, listen on an address of this one and add the names that they "
    "use: --listen 0.0.0.0:8080 --host device.example. There is no encryption and no login.\n"
    "\n"
    "SIGTERM and SIGINT: ends when the requests that have arrived are answered. SIGHUP: opens the "
    "log file anew.\n"
    "\n"
    "Exit codes: 0 all went well, 1 it failed, and standard error says why, 2 the command line or "
    "an environment variable is wrong.";

// Every option, each with its environment variable and its default.
void AddOptions(CLI::App& command, Options& options) {
    command
        .add_option("--listen", options.listen,
                    "Where to listen: ADDRESS:PORT or [IPV6-ADDRESS]:PORT; port 0 takes any that "
                    "is free")
        ->envname("QUILLO_LISTEN")
        ->check(IsEndpoint);
    command
        .add_option(
            "--host", options.hosts,
            "A name that browsers may reach this server by, besides the loopback names "
            "and the address it listens on; may be repeated, or name several with commas between")
        ->envname("QUILLO_HOST")
        ->check(IsHost)
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_option("--workers", options.workers, "How many pages can be made at a time")
        ->envname("QUILLO_WORKERS")
        ->check(CLI::Range(1, 64));
    command
        .add_option("--max-requests", options.mostRequests,
                    "After how many requests a worker is made anew; 0: never")
        ->envname("QUILLO_MAX_REQUESTS")
        ->check(CLI::Range(0, 1000000000));
    command
        .add_option("--deadline", options.deadlineSeconds,
                    "How many seconds a page may take; its worker is then ended")
        ->envname("QUILLO_DEADLINE")
        ->check(CLI::Range(0.1, 3600.0));
    command
        .add_option("--patience", options.patienceSeconds,
                    "How many seconds a client may take to send its request")
        ->envname("QUILLO_PATIENCE")
        ->check(CLI::Range(0.1, 3600.0));
    command
        .add_option("--slow-page", options.slowMilliseconds,
                    "From how many milliseconds on the log warns of a page")
        ->envname("QUILLO_SLOW_PAGE")
        ->check(CLI::Range(0, 3600000));
    command
        .add_option("--state-dir", options.stateFolder, "Where the settings of the device are kept")
        ->envname("QUILLO_STATE_DIR");
    command
        .add_option("--log-level", options.logLevel, "How much is logged: error, warning or info")
        ->envname("QUILLO_LOG_LEVEL")
        ->check(CLI::IsMember({"error", "warning", "info"}));
    command
        .add_option("--log-file", options.logFile,
                    "The file to log to, at its end; without one it is standard error")
        ->envname("QUILLO_LOG_FILE");
    command.add_flag("--check", options.isCheck,
                     "Only check that the settings are in order: the address is this machine's, "
                     "state folder and log file can be written");
}

}  // namespace

Options ParseOptions(int argc, char const* const* argv, std::optional<int>& exitCode) {
    Options options;
    options.stateFolder = DefaultStateFolder();
    CLI::App command("Serves the pages of this machine over HTTP.");
    command.name("quillo-serve");
    command.option_defaults()->always_capture_default();
    command.footer(footer);
    command.set_version_flag("--version", "quillo-serve " QUILLO_VERSION);
    AddOptions(command, options);
    try {
        command.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        if (error.get_exit_code() == 0) {
            exitCode = command.exit(error);  // --help, --version
        } else {
            std::cerr << "quillo-serve: " << error.what() << "\n" << command.help();
            exitCode = 2;
        }
    }
    return options;
}

}  // namespace QuilloServer
