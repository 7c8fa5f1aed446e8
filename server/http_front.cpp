#include "http_front.hpp"

#include <device_log.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "limits.hpp"

namespace QuilloServer {
namespace {

// Room for the head, for what is read of the body at once, and for what libmicrohttpd notes of each
// argument and each cookie, which may be as short as a byte: what does not fit, it refuses in words
// of its own, or without any. Memory that is not needed is not touched.
constexpr std::size_t noteBytes = 64;
constexpr std::size_t memoryLimit = mostHeadBytes * (1 + noteBytes) + 32768;

std::string Header(MHD_Connection* connection, char const* name) {
    return Quillo::Cstr(MHD_lookup_connection_value(connection, MHD_HEADER_KIND, name));
}

MHD_Result TakeCookie(void* cookies, MHD_ValueKind, char const* name, char const* value) {
    (*static_cast<Quillo::UriArgs*>(cookies))[name] =
        Quillo::PcntDecode(Quillo::Cstr(value), nullptr);
    return MHD_YES;
}

__attribute__((format(printf, 2, 0))) void Log(void*, char const* format, std::va_list args) {
    char text[512] = "";
    std::vsnprintf(text, sizeof text, format, args);
    Log_SpecEntry(logSpecInfo, __FILE__, __LINE__, "libmicrohttpd: %s", text);
}

struct EndResponse {
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};

}  // namespace

// One request and its answer, which outlives its sending.
struct HttpFront::Exchange {
    Incoming incoming;
    Answer answer;
    std::string body;
    bool isBegun = false;
};

// What is known of a connection.
struct HttpFront::Standing {
    bool isAnswered = false;
};

HttpFront::HttpFront(Site const& site) : site_(site) {
    daemon_.reset(MHD_start_daemon(
        MHD_USE_EPOLL | MHD_USE_NO_LISTEN_SOCKET | MHD_USE_ERROR_LOG | MHD_USE_TURBO, 0, nullptr,
        nullptr, Handle, this, MHD_OPTION_EXTERNAL_LOGGER, Log, nullptr,
        MHD_OPTION_URI_LOG_CALLBACK, Begin, this, MHD_OPTION_NOTIFY_COMPLETED, Complete, this,
        MHD_OPTION_NOTIFY_CONNECTION, Notify, this, MHD_OPTION_CONNECTION_MEMORY_LIMIT, memoryLimit,
        MHD_OPTION_CONNECTION_LIMIT, mostReaders, MHD_OPTION_CONNECTION_TIMEOUT,
        readerPatienceSeconds, MHD_OPTION_SIGPIPE_HANDLED_BY_APP, 1, MHD_OPTION_END));
    if (!daemon_) {
        throw std::runtime_error(std::string("libmicrohttpd cannot be started: ") +
                                 std::strerror(errno));
    }
}

void HttpFront::Add(int socket) {
    sockaddr_storage peer = {};
    socklen_t size = sizeof peer;
    auto* const address = reinterpret_cast<sockaddr*>(&peer);
    if (getpeername(socket, address, &size) != 0) {
        close(socket);  // the client is gone
    } else if (MHD_add_connection(daemon_.get(), socket, address, size) != MHD_YES) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__,
                      "a connection could not be served: too many answers are read slowly");
    }
}

void HttpFront::Run() {
    MHD_run(daemon_.get());
}

bool HttpFront::CanRun() const {
    pollfd watched = {Descriptor(), POLLIN, 0};
    return Timeout() == 0 || poll(&watched, 1, 0) > 0;
}

int HttpFront::Descriptor() const {
    return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_EPOLL_FD)->epoll_fd;
}

int HttpFront::Timeout() const {
    MHD_UNSIGNED_LONG_LONG milliseconds = 0;
    bool const isSet = MHD_get_timeout(daemon_.get(), &milliseconds) == MHD_YES;
    return isSet ? static_cast<int>(std::min<MHD_UNSIGNED_LONG_LONG>(milliseconds, INT_MAX)) : -1;
}

// The header is not there yet.
void* HttpFront::Begin(void*, char const* target, MHD_Connection*) {
    auto exchange = std::make_unique<Exchange>();
    TakeTarget(exchange->incoming, target);
    return exchange.release();
}

MHD_Result HttpFront::Handle(void* front, MHD_Connection* connection, char const*,
                             char const* method, char const*, char const* data, std::size_t* size,
                             void** exchangeSlot) {
    Exchange& exchange = *static_cast<Exchange*>(*exchangeSlot);
    Incoming& incoming = exchange.incoming;
    if (!exchange.isBegun) {
        exchange.isBegun = true;
        incoming.method = method;
        incoming.host = incoming.host.empty() ? Header(connection, "Host") : incoming.host;
        incoming.origin = Header(connection, "Origin");
        incoming.languages = Header(connection, "Accept-Language");
        incoming.knownTags = Header(connection, "If-None-Match");
        incoming.contentType = Header(connection, "Content-Type");
        MHD_get_connection_values(connection, MHD_COOKIE_KIND, TakeCookie, &incoming.cookies);
        return MHD_YES;
    }
    if (*size != 0) {
        exchange.body.append(data, *size);
        *size = 0;
        return MHD_YES;
    }
    if (IsForm(incoming.contentType)) {
        incoming.form = ReadForm(exchange.body);
    }
    return static_cast<HttpFront*>(front)->AnswerTo(connection, exchange);
}

MHD_Result HttpFront::AnswerTo(MHD_Connection* connection, Exchange& exchange) {
    exchange.answer = site_.AnswerTo(exchange.incoming);
    Answer const& answer = exchange.answer;
    std::string_view const body = answer.Body();
    // The bytes are not written to, and live until the request is complete.
    std::unique_ptr<MHD_Response, EndResponse> const response(MHD_create_response_from_buffer(
        body.size(), const_cast<char*>(body.data()), MHD_RESPMEM_PERSISTENT));
    if (!response) {
        return MHD_NO;
    }
    for (auto const& [name, value] : answer.headers) {
        MHD_add_response_header(response.get(), name.c_str(), value.c_str());
    }
    CountAnswered(connection);
    return MHD_queue_response(connection, static_cast<unsigned>(answer.status), response.get());
}

void HttpFront::CountAnswered(MHD_Connection* connection) {
    auto const* const info =
        MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    static_cast<Standing*>(info->socket_context)->isAnswered = true;
    --unanswered_;
    ++answered_;
}

void HttpFront::Complete(void*, MHD_Connection*, void** exchange, MHD_RequestTerminationCode) {
    delete static_cast<Exchange*>(*exchange);
    *exchange = nullptr;
}

void HttpFront::Notify(void* frontPointer, MHD_Connection*, void** context,
                       MHD_ConnectionNotificationCode code) {
    auto& front = *static_cast<HttpFront*>(frontPointer);
    if (code == MHD_CONNECTION_NOTIFY_STARTED) {
        *context = new Standing();
        ++front.connections_;
        ++front.unanswered_;
        return;
    }
    std::unique_ptr<Standing> const standing(static_cast<Standing*>(*context));
    --front.connections_;
    front.unanswered_ -= standing->isAnswered ? 0 : 1;
}

}  // namespace QuilloServer
