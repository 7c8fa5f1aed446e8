#include "supervisor.hpp"

#include <device_log.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <system_error>
#include <vector>

#include "log_file.hpp"
#include "signals.hpp"

namespace QuilloServer {
namespace {

// How long a process that ended before it did anything is not made again.
constexpr std::int64_t pauseMilliseconds = 1000;
// How long past the deadline answers may take to be read when the server is stopped.
constexpr int stopMilliseconds = 5000;
// A worker's exit code when it has answered its requests and was not told to stop.
constexpr int wornCode = 10;

// A process, or the place of one that is to be made.
struct Child {
    pid_t pid = 0;
    std::int64_t startAt = 0;
    WorkerRecord* record = nullptr;  // null: the lobby
};

// Serving; or told to stop: first the lobby, which passes on all that is there, then the workers,
// which answer it.
enum class Stage { Serving, LobbyEnds, WorkersEnd };

WorkerRecord* SharedRecords(std::size_t count) {
    void* const memory = mmap(nullptr, count * sizeof(WorkerRecord), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "no memory can be shared");
    }
    return static_cast<WorkerRecord*>(memory);
}

std::string HowItEnded(int status) {
    if (WIFSIGNALED(status)) {
        return std::string("was ended by a signal (") + strsignal(WTERMSIG(status)) + ")";
    }
    return "ended with exit code " + std::to_string(WEXITSTATUS(status));
}

class Supervisor {
public:
    Supervisor(int workers, LobbySettings const& lobby, WorkerSettings const& worker);
    void Run();

private:
    void BlockSignals();
    void WaitForSignal();
    void BeginToStop();
    void StartDue();
    void Start(Child& child);
    [[noreturn]] void RunChild(Child const& child) const;
    void Reap();
    void Take(Child& child, int status);
    void Advance();
    void TellAll(int number) const;

    LobbySettings const& lobbySettings_;
    WorkerSettings const& workerSettings_;
    sigset_t signals_ = {};
    pid_t const self_ = getpid();
    Stage stage_ = Stage::Serving;
    std::int64_t stopBy_ = 0;      // unless it serves: when all that is left is killed
    std::vector<Child> children_;  // the lobby first; those that ended for good are gone
};

Supervisor::Supervisor(int workers, LobbySettings const& lobby, WorkerSettings const& worker)
    : lobbySettings_(lobby), workerSettings_(worker), children_(1) {
    auto const count = static_cast<std::size_t>(workers);
    WorkerRecord* const records = SharedRecords(count);
    for (std::size_t i = 0; i < count; ++i) {
        children_.push_back({0, 0, records + i});
    }
}

void Supervisor::BlockSignals() {
    sigemptyset(&signals_);
    for (int const number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD}) {
        sigaddset(&signals_, number);
    }
    sigprocmask(SIG_BLOCK, &signals_, nullptr);
}

void Supervisor::Run() {
    BlockSignals();
    while (!children_.empty()) {
        StartDue();
        WaitForSignal();
        Reap();
        Advance();
    }
}

void Supervisor::WaitForSignal() {
    timespec const time = {pauseMilliseconds / 1000, 0};
    bool const isCalm =
        stage_ == Stage::Serving && std::all_of(children_.begin(), children_.end(),
                                                [](Child const& child) { return child.pid != 0; });
    int const number =
        isCalm ? sigwaitinfo(&signals_, nullptr) : sigtimedwait(&signals_, nullptr, &time);
    if (number == SIGHUP) {
        ReopenLog();
        TellAll(SIGHUP);
    } else if ((number == SIGTERM || number == SIGINT) && stage_ == Stage::Serving) {
        BeginToStop();
    }
}

// From now on the system takes no connection while another one waits to be accepted: the workers
// come to an end even when clients do not.
void Supervisor::BeginToStop() {
    stage_ = Stage::LobbyEnds;
    stopBy_ = MillisecondsNow() + workerSettings_.deadlineMilliseconds + stopMilliseconds;
    listen(workerSettings_.listener, 0);
    pid_t const lobby = children_.front().pid;
    if (lobby != 0) {
        kill(lobby, SIGTERM);
    } else {
        children_.erase(children_.begin());
    }
}

// From stage to stage.
void Supervisor::Advance() {
    bool const hasLobby = !children_.empty() && children_.front().record == nullptr;
    if (stage_ == Stage::LobbyEnds && !hasLobby) {
        stage_ = Stage::WorkersEnd;
        TellAll(SIGTERM);
    }
    if (stage_ != Stage::Serving && MillisecondsNow() >= stopBy_) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__,
                      "the server ends although answers are still being read");
        TellAll(SIGKILL);
        children_.clear();
    }
}

void Supervisor::TellAll(int number) const {
    for (Child const& child : children_) {
        if (child.pid != 0) {
            kill(child.pid, number);
        }
    }
}

void Supervisor::StartDue() {
    for (Child& child : children_) {
        if (child.pid == 0 && child.startAt <= MillisecondsNow()) {
            Start(child);
        }
    }
}

void Supervisor::Start(Child& child) {
    if (child.record != nullptr) {
        *child.record = WorkerRecord();
    }
    std::fflush(nullptr);
    pid_t const pid = fork();
    if (pid == 0) {
        RunChild(child);
    }
    child.startAt = MillisecondsNow() + pauseMilliseconds;
    if (pid < 0) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "no process can be made: %s",
                      std::strerror(errno));
        return;
    }
    child.pid = pid;
    if (stage_ == Stage::WorkersEnd) {
        kill(pid, SIGTERM);  // it answers what is still there
    }
}

// The child never outlives its supervisor, not even one that was killed.
void Supervisor::RunChild(Child const& child) const {
    int code = 1;
    try {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        TakeSignals();
        if (getppid() != self_) {
            std::exit(0);
        }
        if (child.record == nullptr) {
            RunLobby(lobbySettings_);
            code = 0;
        } else {
            code = RunWorker(workerSettings_, *child.record) ? 0 : wornCode;
        }
    } catch (std::exception const& error) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "a process of the server failed: %s",
                      error.what());
    }
    std::exit(code);
}

void Supervisor::Reap() {
    int status = 0;
    for (pid_t pid = waitpid(-1, &status, WNOHANG); pid > 0; pid = waitpid(-1, &status, WNOHANG)) {
        auto const child = std::find_if(children_.begin(), children_.end(),
                                        [&](Child const& one) { return one.pid == pid; });
        bool const isDone = WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (stage_ != Stage::Serving && (isDone || child->record == nullptr)) {
            children_.erase(child);
        } else {
            Take(*child, status);
        }
    }
}

// A process that ends before it was of any use is not made again at once.
void Supervisor::Take(Child& child, int status) {
    child.pid = 0;
    if (WIFEXITED(status) && WEXITSTATUS(status) == wornCode) {
        child.startAt = 0;
        return;
    }
    std::string const end = HowItEnded(status);
    if (child.record == nullptr) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "the lobby %s", end.c_str());
        return;
    }
    WorkerRecord const& record = *child.record;
    child.startAt = record.hasServed ? 0 : child.startAt;
    std::int64_t const inPage = MillisecondsNow() - record.pageBegan;
    if (!record.isInPage) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "a worker %s between pages", end.c_str());
    } else if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL &&
               inPage >= workerSettings_.deadlineMilliseconds) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                      "page '%s' overran the deadline of %d ms at %s; its worker was ended",
                      record.page, workerSettings_.deadlineMilliseconds, record.path);
    } else {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "a worker %s in page '%s' at %s",
                      end.c_str(), record.page, record.path);
    }
}

}  // namespace

void RunSupervisor(int workers, LobbySettings const& lobby, WorkerSettings const& worker) {
    Supervisor(workers, lobby, worker).Run();
    RefuseArrivals(lobby.arrivals);
}

}  // namespace QuilloServer
