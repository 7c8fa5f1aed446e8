#include "state_folder.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <host/host.hpp>
#include <stdexcept>
#include <system_error>

#include "descriptor.hpp"

namespace QuilloServer {
namespace {

std::string FromEnvironment(char const* name) {
    char const* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

[[noreturn]] void Fail(std::string const& folder, std::string const& reason) {
    throw std::runtime_error("the state folder " + folder + " cannot be written: " + reason +
                             "; name another one with --state-dir");
}

}  // namespace

std::string DefaultStateFolder() {
    if (geteuid() == 0) {
        return "/var/lib/quillo";
    }
    std::string const state = FromEnvironment("XDG_STATE_HOME");
    return state.empty() ? FromEnvironment("HOME") + "/.local/state/quillo" : state + "/quillo";
}

void PrepareStateFolder(std::string const& folder) {
    QuilloHost::SetStateFolder(folder);
    if (std::error_code const error = QuilloHost::MakeStateFolder()) {
        Fail(folder, error.message());
    }
    // Only an attempt tells: root may write to any folder, but to no read-only file system.
    std::string attempt = folder + "/.attempt-XXXXXX";
    Descriptor const file(mkstemp(attempt.data()));
    if (file.Get() < 0) {
        Fail(folder, std::strerror(errno));
    }
    unlink(attempt.c_str());
}

}  // namespace QuilloServer
