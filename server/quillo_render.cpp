// quillo-render: writes one page to standard output, with this machine's data.
//
// Exit codes: 0, the page was written; 1, it was not, and standard error says why; 2, the command
// line was wrong, and standard error shows how it is used.
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <host/host.hpp>
#include <iostream>
#include <quillo>
#include <sstream>
#include <stdexcept>

#include "page.hpp"

namespace {

struct Options {
    std::string page;
    std::string language = "en";
    std::string arguments;
    bool isVerbose = false;
};

ZOV_AppData MakeRecord(Options const& options) {
    ZOV_AppData app = {};
    options.language.copy(app.preferredLang, sizeof app.preferredLang - 1);
    app.uriArgs = options.arguments.empty() ? nullptr : options.arguments.c_str();
    app.out = stdout;
    return app;
}

// The whole page, or an exception: nothing is sent of a page that fails half way.
std::string WriteToMemory(QuilloServer::Page const& page, Options const& options) {
    ZOV_AppData app = MakeRecord(options);
    QuilloServer::Request request = {app, Quillo::GetUriArgs(app, Quillo::UriArgs())};
    request.standsAlone = true;
    std::ostringstream out;
    page.write(request, out);
    return out.str();
}

void Send(std::string const& page) {
    bool const isWritten =
        std::fwrite(page.data(), 1, page.size(), stdout) == page.size() && std::fflush(stdout) == 0;
    if (!isWritten) {
        throw std::runtime_error(std::string("standard output cannot be written: ") +
                                 std::strerror(errno));
    }
}

int Render(QuilloServer::Page const& page, Options const& options) {
    try {
        Send(WriteToMemory(page, options));
        return 0;
    } catch (std::exception const& error) {
        std::cerr << "quillo-render: page '" << page.name << "': " << error.what() << "\n";
        return 1;
    }
}

// The request record keeps that much of the languages; a cut text could name another language.
std::string FitsRecord(std::string const& languages) {
    return languages.size() < sizeof ZOV_AppData::preferredLang ? "" : "is longer than 63 bytes";
}

// The names of the pages, each with its title, as a part of the usage.
std::string PageList() {
    std::string list = "Pages:\n";
    for (QuilloServer::Page const* page : QuilloServer::Pages()) {
        list += "  " + page->name +
                std::string(28 - std::min<std::size_t>(27, page->name.size()), ' ') + page->title +
                "\n";
    }
    return list;
}

int Run(int argc, char** argv) {
    Options options;
    CLI::App command("Writes one page, with this machine's data, to standard output.");
    command.name("quillo-render");
    command.footer(
        PageList() +
        "\nExit codes: 0 the page was written, 1 it was not, 2 the command line is wrong.");
    command.set_version_flag("--version", "quillo-render " QUILLO_VERSION);
    command.add_option("PAGE", options.page, "The page to write")->required();
    command
        .add_option("-l,--language", options.language,
                    "The reader's languages, as in an Accept-Language header (de, ar;q=0.8)")
        ->check(FitsRecord)
        ->capture_default_str();
    command.add_option("-a,--arguments", options.arguments,
                       "The request's arguments, NAME=VALUE&NAME=VALUE");
    command.add_flag("-v,--verbose", options.isVerbose,
                     "Show the whole device log, not only problems");
    try {
        command.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
        if (error.get_exit_code() == 0) {
            return command.exit(error);  // --help, --version
        }
        std::cerr << "quillo-render: " << error.what() << "\n" << command.help();
        return 2;
    }
    QuilloHost::SetLogThreshold(options.isVerbose ? QuilloHost::LogLevel::Info
                                                  : QuilloHost::LogLevel::Warning);
    for (QuilloServer::Setting const* setting : QuilloServer::Settings()) {
        QuilloHost::DeclareSetting(setting->name, setting->defaultValue);
    }
    QuilloServer::Page const* const page = QuilloServer::FindPage(options.page);
    if (page == nullptr) {
        std::cerr << "quillo-render: there is no page '" << options.page << "'\n" << command.help();
        return 2;
    }
    return Render(*page, options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "quillo-render: %s\n", error.what());
        return 1;
    }
}
