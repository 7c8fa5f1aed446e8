#include "serve.hpp"

#include <cstdio>
#include <exception>
#include <host/host.hpp>
#include <string>

#include "descriptor_queue.hpp"
#include "digests.hpp"
#include "host_names.hpp"
#include "listener.hpp"
#include "log_file.hpp"
#include "options.hpp"
#include "page.hpp"
#include "state_folder.hpp"
#include "supervisor.hpp"

namespace QuilloServer {
namespace {

constexpr std::size_t secretBytes = 32;

QuilloHost::LogLevel Level(std::string const& name) {
    if (name == "info") {
        return QuilloHost::LogLevel::Info;
    }
    return name == "error" ? QuilloHost::LogLevel::Error : QuilloHost::LogLevel::Warning;
}

int Milliseconds(double seconds) {
    return static_cast<int>(seconds * 1000);
}

std::vector<std::string> HostNames(Options const& options) {
    std::vector<std::string> names = {HostName(options.listen)};
    for (std::string const& host : options.hosts) {
        names.push_back(GivenHostName(host));
    }
    return names;
}

void SetUpPlatform(Options const& options) {
    QuilloHost::SetLogThreshold(Level(options.logLevel));
    PrepareStateFolder(options.stateFolder);
    for (Setting const* setting : Settings()) {
        QuilloHost::DeclareSetting(setting->name, setting->defaultValue);
    }
    if (!options.logFile.empty()) {
        OpenLog(options.logFile);
    }
}

int Check(Options const& options) {
    CheckAddress(ParseEndpoint(options.listen));
    SetUpPlatform(options);
    std::puts("quillo-serve: the settings are in order");
    return 0;
}

int Run(Options const& options) {
    Endpoint const endpoint = ParseEndpoint(options.listen);
    Descriptor const listener = Listen(endpoint);
    SetUpPlatform(options);
    DescriptorQueue const arrivals;
    DescriptorQueue const ready;
    LobbySettings const lobby = {arrivals, ready, Milliseconds(options.patienceSeconds)};
    WorkerSettings const worker = {
        listener.Get(),
        arrivals,
        ready,
        {HostNames(options), RandomBytes(secretBytes), options.slowMilliseconds},
        static_cast<unsigned long>(options.mostRequests),
        Milliseconds(options.deadlineSeconds)};
    std::printf("quillo-serve: %s\n", ShownAddress(endpoint, listener.Get()).c_str());
    std::fflush(stdout);
    RunSupervisor(options.workers, lobby, worker);
    return 0;
}

}  // namespace

int Serve(int argc, char const* const* argv) noexcept {
    try {
        std::optional<int> exitCode;
        Options const options = ParseOptions(argc, argv, exitCode);
        if (exitCode) {
            return *exitCode;
        }
        return options.isCheck ? Check(options) : Run(options);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "quillo-serve: %s\n", error.what());
        return 1;
    }
}

}  // namespace QuilloServer
