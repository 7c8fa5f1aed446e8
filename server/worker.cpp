#include "worker.hpp"

#include <sys/epoll.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include "connection.hpp"
#include "deadline_timer.hpp"
#include "http_front.hpp"
#include "refusals.hpp"
#include "signals.hpp"

namespace QuilloServer {
namespace {

// Past that, the connection ends.
constexpr int lobbyPatienceMilliseconds = 2000;

template <std::size_t size>
void CopyText(char (&to)[size], std::string const& text) {
    to[text.copy(to, size - 1)] = '\0';
}

class Worker {
public:
    Worker(WorkerSettings const& settings, WorkerRecord& record);
    void Run();

private:
    void WatchPage(Page const* page, std::string const& path);
    bool IsWorn() const;
    void Watch(int descriptor, std::uint32_t events);
    void Wait();
    bool TakeRequest();
    bool TakeReady();
    bool Accept();
    void Answer(int socket);
    void Drain();

    WorkerSettings const& settings_;
    WorkerRecord& record_;
    DeadlineTimer timer_;
    Site site_;
    HttpFront front_;
    Descriptor epoll_;
};

Worker::Worker(WorkerSettings const& settings, WorkerRecord& record)
    : settings_(settings),
      record_(record),
      site_(settings.site,
            [this](Page const* page, std::string const& path) { WatchPage(page, path); }),
      front_(site_),
      epoll_(epoll_create1(EPOLL_CLOEXEC)) {
    if (epoll_.Get() < 0) {
        throw std::system_error(errno, std::generic_category(), "epoll_create1");
    }
    Watch(SignalDescriptor(), EPOLLIN);
    Watch(front_.Descriptor(), EPOLLIN);
    // Of the workers that wait for one of these, the system wakes one.
    Watch(settings.ready.ReadEnd(), EPOLLIN | EPOLLEXCLUSIVE);
    Watch(settings.listener, EPOLLIN | EPOLLEXCLUSIVE);
}

void Worker::Watch(int descriptor, std::uint32_t events) {
    epoll_event event = {};
    event.events = events;
    epoll_ctl(epoll_.Get(), EPOLL_CTL_ADD, descriptor, &event);
}

void Worker::WatchPage(Page const* page, std::string const& path) {
    if (page != nullptr) {
        CopyText(record_.page, page->name);
        CopyText(record_.path, path);
        record_.hasServed = true;
    }
    record_.pageBegan = MillisecondsNow();
    record_.isInPage = page != nullptr;
    timer_.Set(page != nullptr ? settings_.deadlineMilliseconds : 0);
}

// A worker with answers that are read slowly goes on until they are gone.
bool Worker::IsWorn() const {
    return settings_.mostRequests != 0 && front_.Answered() >= settings_.mostRequests &&
           !front_.IsBusy();
}

void Worker::Run() {
    while (!IsStopping() && !IsWorn()) {
        Wait();
        front_.Run();
        TakeRequest();
    }
    Drain();
}

// For signals, for what is under way, and for what comes. What it is, is looked at afterwards.
void Worker::Wait() {
    epoll_event event = {};
    epoll_wait(epoll_.Get(), &event, 1, front_.Timeout());
    ReadSignals();
}

// Those that have waited longer go first.
bool Worker::TakeRequest() {
    return TakeReady() || Accept();
}

bool Worker::TakeReady() {
    int const socket = settings_.ready.Take();
    if (socket < 0) {
        return false;
    }
    Answer(socket);
    return true;
}

bool Worker::Accept() {
    Descriptor socket(accept4(settings_.listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (socket.Get() < 0) {
        return false;
    }
    if (LookAt(socket.Get()).arrival == Arrival::Complete) {
        Answer(socket.Release());
    } else {
        // The lobby takes one in no time, unless it is being made anew.
        settings_.arrivals.Put(socket.Get(), lobbyPatienceMilliseconds);
    }
    return true;
}

// Until the answer is on its way, nothing else is taken. The request is there as a whole; should
// libmicrohttpd wait for more of it even so, it goes on when that comes.
void Worker::Answer(int socket) {
    front_.Add(socket);
    while (front_.IsAnswering() && front_.CanRun()) {
        front_.Run();
    }
}

// What was sent before the server was told to stop is answered; what comes later is for others.
void Worker::Drain() {
    if (IsStopping()) {
        while (TakeRequest()) {
        }
    }
    for (int const source : {settings_.ready.ReadEnd(), settings_.listener}) {
        epoll_ctl(epoll_.Get(), EPOLL_CTL_DEL, source, nullptr);
    }
    while (front_.IsBusy()) {
        Wait();
        front_.Run();
    }
}

}  // namespace

bool RunWorker(WorkerSettings const& settings, WorkerRecord& record) {
    Worker(settings, record).Run();
    return IsStopping();
}

}  // namespace QuilloServer
