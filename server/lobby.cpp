#include "lobby.hpp"

#include <device_log.h>
#include <sys/epoll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <deque>
#include <list>
#include <string>
#include <string_view>
#include <system_error>

#include "connection.hpp"
#include "limits.hpp"
#include "refusals.hpp"
#include "signals.hpp"

namespace QuilloServer {
namespace {

typedef std::chrono::steady_clock Clock;
using std::chrono::milliseconds;

// Whether what lies in the connection is a request for a head alone.
bool IsForHead(int socket) {
    char method[5] = "";
    return recv(socket, method, sizeof method, MSG_PEEK | MSG_DONTWAIT) == sizeof method &&
           std::string_view(method, sizeof method) == "HEAD ";
}

// Sends a refusal, as the last that is sent.
void SendRefusal(int socket, int status) {
    std::string text = Serialized(Refusal(status));
    if (IsForHead(socket)) {
        text.erase(text.find("\r\n\r\n") + 4);
    }
    send(socket, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    shutdown(socket, SHUT_WR);
}

// Drops what lies in the connection. Returns false when nothing will come any more.
bool DropText(int socket) {
    char text[16384];
    ssize_t count = 0;
    do {
        count = recv(socket, text, sizeof text, MSG_DONTWAIT);
    } while (count > 0);
    return count < 0 && errno == EAGAIN;
}

struct Guest {
    Descriptor socket;
    std::list<Guest>::iterator place;
    Clock::time_point until;  // how long it may stay
    bool isLeaving;           // it was refused; what it still sends is dropped
    bool isToldToContinue;
};

// In the order of `until`, since all of one list may stay equally long.
typedef std::list<Guest> Guests;

class Lobby {
public:
    explicit Lobby(LobbySettings const& settings);
    void Run();

private:
    void Watch(int operation, int socket, std::uint32_t events, void* subject) const;
    int Timeout() const;
    void Serve(epoll_event const& event);
    void TakeArrivals();
    void Consider(Guests::iterator guest, bool isEnded);
    void PassOn(Guests::iterator guest);
    void PassOnReady();
    void Refuse(Guests::iterator guest, int status);
    void Linger(Guests::iterator guest);
    void End(Guests& guests, Guests::iterator guest);
    void EndOverdue();

    LobbySettings const& settings_;
    Descriptor epoll_;
    Guests waiting_;
    Guests leaving_;
    std::deque<Descriptor> ready_;  // while the queue to the workers is full
};

Lobby::Lobby(LobbySettings const& settings)
    : settings_(settings), epoll_(epoll_create1(EPOLL_CLOEXEC)) {
    if (epoll_.Get() < 0) {
        throw std::system_error(errno, std::generic_category(), "epoll_create1");
    }
    Watch(EPOLL_CTL_ADD, SignalDescriptor(), EPOLLIN, &epoll_);
    Watch(EPOLL_CTL_ADD, settings.arrivals.ReadEnd(), EPOLLIN, &waiting_);
    Watch(EPOLL_CTL_ADD, settings.ready.WriteEnd(), 0, &ready_);
}

void Lobby::Watch(int operation, int socket, std::uint32_t events, void* subject) const {
    epoll_event event = {};
    event.events = events;
    event.data.ptr = subject;
    epoll_ctl(epoll_.Get(), operation, socket, &event);
}

int Lobby::Timeout() const {
    Clock::time_point next = Clock::time_point::max();
    for (Guests const* guests : {&waiting_, &leaving_}) {
        next = guests->empty() ? next : std::min(next, guests->front().until);
    }
    if (next == Clock::time_point::max()) {
        return -1;
    }
    auto const left = std::chrono::ceil<milliseconds>(next - Clock::now());
    return static_cast<int>(std::max<milliseconds::rep>(left.count(), 0));
}

void Lobby::Run() {
    while (!IsStopping()) {
        epoll_event event = {};
        // One at a time: what one leads to may end another.
        if (epoll_wait(epoll_.Get(), &event, 1, Timeout()) > 0) {
            Serve(event);
        }
        EndOverdue();
    }
    TakeArrivals();
    while (!waiting_.empty()) {
        Refuse(waiting_.begin(), 503);
    }
}

void Lobby::Serve(epoll_event const& event) {
    if (event.data.ptr == &epoll_) {
        ReadSignals();
    } else if (event.data.ptr == &waiting_) {
        TakeArrivals();
    } else if (event.data.ptr == &ready_) {
        PassOnReady();
    } else {
        Guest const& guest = *static_cast<Guest*>(event.data.ptr);
        if (guest.isLeaving) {
            Linger(guest.place);
        } else {
            Consider(guest.place, (event.events & (EPOLLRDHUP | EPOLLHUP | EPOLLERR)) != 0);
        }
    }
}

void Lobby::TakeArrivals() {
    for (int socket = settings_.arrivals.Take(); socket >= 0; socket = settings_.arrivals.Take()) {
        if (waiting_.size() >= mostGuests) {
            Refuse(waiting_.begin(), 408);
        }
        Clock::time_point const until = Clock::now() + milliseconds(settings_.patienceMilliseconds);
        waiting_.push_back({Descriptor(socket), {}, until, false, false});
        Guests::iterator const guest = std::prev(waiting_.end());
        guest->place = guest;
        Watch(EPOLL_CTL_ADD, socket, EPOLLIN | EPOLLRDHUP, &*guest);
        Consider(guest, false);
    }
}

void Lobby::Consider(Guests::iterator guest, bool isEnded) {
    int const socket = guest->socket.Get();
    Look const look = LookAt(socket);
    if (look.arrival == Arrival::Complete) {
        PassOn(guest);
    } else if (look.arrival == Arrival::Refused) {
        Refuse(guest, look.refusal);
    } else if (look.arrival == Arrival::Gone || isEnded) {
        End(waiting_, guest);
    } else {
        if (look.isContinueExpected && !guest->isToldToContinue) {
            constexpr std::string_view word = "HTTP/1.1 100 Continue\r\n\r\n";
            send(socket, word.data(), word.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
            guest->isToldToContinue = true;
        }
        AwaitBytes(socket, look.awaited);
    }
}

void Lobby::PassOn(Guests::iterator guest) {
    int const socket = guest->socket.Get();
    Watch(EPOLL_CTL_DEL, socket, 0, nullptr);
    ready_.push_back(std::move(guest->socket));
    waiting_.erase(guest);
    PassOnReady();
}

void Lobby::PassOnReady() {
    while (!ready_.empty() && settings_.ready.Put(ready_.front().Get(), 0)) {
        ready_.pop_front();
    }
    Watch(EPOLL_CTL_MOD, settings_.ready.WriteEnd(), ready_.empty() ? 0U : EPOLLOUT, &ready_);
}

// The answer goes out whatever else the client sends: were the connection closed over unread text,
// the system would reset it, and the client might never see the answer.
void Lobby::Refuse(Guests::iterator guest, int status) {
    Log_SpecEntry(logSpecInfo, __FILE__, __LINE__, "a request was refused: %d", status);
    if (leaving_.size() >= mostLeaving) {
        End(leaving_, leaving_.begin());
    }
    int const socket = guest->socket.Get();
    SendRefusal(socket, status);
    AwaitBytes(socket, 1);
    guest->isLeaving = true;
    guest->until = Clock::now() + milliseconds(lingerMilliseconds);
    leaving_.splice(leaving_.end(), waiting_, guest);
    Linger(guest);
}

void Lobby::Linger(Guests::iterator guest) {
    if (!DropText(guest->socket.Get())) {
        End(leaving_, guest);
    }
}

// Another process may hold the connection for a moment still, and as long it would be watched.
void Lobby::End(Guests& guests, Guests::iterator guest) {
    Watch(EPOLL_CTL_DEL, guest->socket.Get(), 0, nullptr);
    guests.erase(guest);
}

void Lobby::EndOverdue() {
    Clock::time_point const now = Clock::now();
    while (!waiting_.empty() && waiting_.front().until <= now) {
        Refuse(waiting_.begin(), 408);
    }
    while (!leaving_.empty() && leaving_.front().until <= now) {
        End(leaving_, leaving_.begin());
    }
}

}  // namespace

void RunLobby(LobbySettings const& settings) {
    Lobby(settings).Run();
}

void RefuseArrivals(DescriptorQueue const& arrivals) {
    for (Descriptor guest(arrivals.Take()); guest.Get() >= 0; guest = Descriptor(arrivals.Take())) {
        SendRefusal(guest.Get(), 503);
        DropText(guest.Get());
    }
}

}  // namespace QuilloServer
