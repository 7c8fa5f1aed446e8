#include "options.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>
#include <type_traits>

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

// Says what is wrong with a text that is no such number. CLI11's own check lets "nan" through.
template <class Number>
auto IsBetween(Number least, Number most) {
    return [=](std::string const& text) {
        Number number = 0;
        char const* const end = text.data() + text.size();
        auto const result = std::from_chars(text.data(), end, number);
        bool const isNumber = result.ec == std::errc() && result.ptr == end;
        std::ostringstream fault;
        if (!isNumber || !(number >= least && number <= most)) {
            fault << "'" << text << "' is not a " << (std::is_integral_v<Number> ? "whole " : "")
                  << "number from " << least << " to " << most;
        }
        return fault.str();
    };
}

char const footer[] =
    "An option on the command line goes before its environment variable.\n"
    "\n"
    "For browsers on other machines, listen on an address of this one and add the\n"
    "names that they use: --listen 0.0.0.0:8080 --host device.example\n"
    "There is no encryption and no login.\n"
    "\n"
    "SIGTERM and SIGINT: ends when the requests that have arrived are answered.\n"
    "SIGHUP: opens the log file anew.\n"
    "\n"
    "Exit codes: 0 all went well; 1 it failed, and standard error says why; 2 the\n"
    "command line or an environment variable is wrong.";

char const usage[] =
    "Usage: quillo-serve [OPTIONS]\n"
    "quillo-serve --help lists the options, and the environment variables that may\n"
    "stand in their place.\n";

// Every option, each with its environment variable and its default.
void AddOptions(CLI::App& command, Options& options) {
    command
        .add_option("--listen", options.listen,
                    "Where to listen: ADDRESS:PORT or\n[IPV6-ADDRESS]:PORT; port 0 takes any\n"
                    "that is free")
        ->envname("QUILLO_LISTEN")
        ->check(IsEndpoint);
    command
        .add_option(
            "--host", options.hosts,
            "A name that browsers may reach this server\nby, besides the loopback names and the\n"
            "address it listens on; may be repeated, or\nname several with commas between")
        ->envname("QUILLO_HOST")
        ->check(IsHost)
        ->delimiter(',')
        ->allow_extra_args(false)
        ->default_str("");
    command
        .add_option("--workers", options.workers,
                    "How many pages can be made at a time, 64 at\nmost")
        ->envname("QUILLO_WORKERS")
        ->check(IsBetween(1, 64));
    command
        .add_option("--max-requests", options.mostRequests,
                    "After how many requests a worker is made\nanew; 0: never")
        ->envname("QUILLO_MAX_REQUESTS")
        ->check(IsBetween(0, 1000000000));
    command
        .add_option("--deadline", options.deadlineSeconds,
                    "How many seconds a page may take; its worker\nis then ended")
        ->envname("QUILLO_DEADLINE")
        ->check(IsBetween(0.1, 3600.0));
    command
        .add_option("--patience", options.patienceSeconds,
                    "How many seconds a client may take to send\nits request")
        ->envname("QUILLO_PATIENCE")
        ->check(IsBetween(0.1, 3600.0));
    command
        .add_option("--slow-page", options.slowMilliseconds,
                    "From how many milliseconds on the log warns\nof a page")
        ->envname("QUILLO_SLOW_PAGE")
        ->check(IsBetween(0, 3600000));
    command
        .add_option("--state-dir", options.stateFolder, "Where the settings of the device are kept")
        ->envname("QUILLO_STATE_DIR");
    command
        .add_option("--log-level", options.logLevel, "How much is logged: error, warning or info")
        ->envname("QUILLO_LOG_LEVEL")
        ->check(CLI::IsMember({"error", "warning", "info"}));
    command
        .add_option("--log-file", options.logFile,
                    "The file to log to, at its end; without one\nit is standard error")
        ->envname("QUILLO_LOG_FILE");
    command.add_flag("--check", options.isCheck,
                     "Only check that the settings are in order:\nthe address is this machine's, "
                     "state folder\nand log file can be written");
}

bool IsGiven(std::string const& option, int argc, char const* const* argv) {
    return std::any_of(argv + 1, argv + argc, [&](std::string const& argument) {
        return argument.substr(0, argument.find('=')) == option;
    });
}

// The fault of an option, under the name of its environment variable where that was wrong.
std::string Told(std::string const& fault, CLI::App const& command, int argc,
                 char const* const* argv) {
    std::string const name = fault.substr(0, fault.find(':'));
    CLI::Option const* const option = command.get_option_no_throw(name);
    bool const isVariable =
        option != nullptr && !option->get_envname().empty() && !IsGiven(name, argc, argv);
    return isVariable ? option->get_envname() + fault.substr(name.size()) : fault;
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
            std::cerr << "quillo-serve: " << Told(error.what(), command, argc, argv) << "\n"
                      << usage;
            exitCode = 2;
        }
    }
    return options;
}

}  // namespace QuilloServer
