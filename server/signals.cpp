#include "signals.hpp"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "log_file.hpp"

namespace QuilloServer {
namespace {

int descriptor = -1;
bool isStopping = false;

}  // namespace

void TakeSignals() {
    // Of a terminal's interrupt the supervisor tells the others.
    std::signal(SIGINT, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t taken;
    sigemptyset(&taken);
    sigaddset(&taken, SIGTERM);
    sigaddset(&taken, SIGHUP);
    sigprocmask(SIG_SETMASK, &taken, nullptr);
    descriptor = signalfd(-1, &taken, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "signalfd");
    }
}

int SignalDescriptor() {
    return descriptor;
}

void ReadSignals() {
    signalfd_siginfo info = {};
    while (read(descriptor, &info, sizeof info) == sizeof info) {
        if (info.ssi_signo == SIGHUP) {
            ReopenLog();
        } else {
            isStopping = true;
        }
    }
}

bool IsStopping() {
    return isStopping;
}

}  // namespace QuilloServer
