#include "listener.hpp"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "limits.hpp"

namespace QuilloServer {
namespace {

constexpr int backlog = 1024;

struct FreeAddresses {
    void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};

bool IsPort(std::string const& text) {
    std::uint16_t number = 0;
    char const* const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

std::string Shown(Endpoint const& endpoint) {
    bool const hasColon = endpoint.address.find(':') != std::string::npos;
    return (hasColon ? "[" + endpoint.address + "]" : endpoint.address) + ":" + endpoint.port;
}

[[noreturn]] void Fail(Endpoint const& endpoint, std::string const& reason) {
    throw std::runtime_error("cannot listen on " + Shown(endpoint) + ": " + reason);
}

std::string Reason(int error) {
    if (error == EADDRINUSE) {
        return "the port is taken by another program; name another one with --listen, or 0 for "
               "any that is free";
    }
    if (error == EADDRNOTAVAIL) {
        return "this machine has no such address; name another one with --listen";
    }
    if (error == EACCES) {
        return "ports below 1024 are for root; name another one with --listen";
    }
    return std::strerror(error);
}

Descriptor Bind(Endpoint const& endpoint, std::string const& port) {
    addrinfo hints = {};
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    int const error = getaddrinfo(endpoint.address.c_str(), port.c_str(), &hints, &found);
    std::unique_ptr<addrinfo, FreeAddresses> const addresses(found);
    if (error != 0) {
        Fail(endpoint, std::string(gai_strerror(error)) + "; name an address with --listen");
    }
    Descriptor listener(
        socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_TCP));
    int const yes = 1;
    // The port can be had again while connections of an earlier server are still closing.
    setsockopt(listener.Get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (listener.Get() < 0 || bind(listener.Get(), found->ai_addr, found->ai_addrlen) != 0) {
        Fail(endpoint, Reason(errno));
    }
    return listener;
}

}  // namespace

Endpoint ParseEndpoint(std::string const& text) {
    std::size_t const colon = text.rfind(':');
    Endpoint endpoint = {text.substr(0, colon),
                         colon != std::string::npos ? text.substr(colon + 1) : ""};
    std::string& address = endpoint.address;
    bool const isBracketed = address.size() > 2 && address.front() == '[' && address.back() == ']';
    if (isBracketed) {
        address = address.substr(1, address.size() - 2);
    }
    if (address.empty() || address.find_first_of("[]") != std::string::npos ||
        !IsPort(endpoint.port) || (address.find(':') != std::string::npos) != isBracketed) {
        throw std::invalid_argument("'" + text + "' is not ADDRESS:PORT or [IPV6-ADDRESS]:PORT");
    }
    return endpoint;
}

Descriptor Listen(Endpoint const& endpoint) {
    Descriptor listener = Bind(endpoint, endpoint.port);
    // Accepted connections take this over.
    int const size = sendBufferBytes;
    setsockopt(listener.Get(), SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    // Most requests are there as a whole when their connection is given, and need no waiting for.
    int const seconds = 1;
    setsockopt(listener.Get(), IPPROTO_TCP, TCP_DEFER_ACCEPT, &seconds, sizeof seconds);
    if (listen(listener.Get(), backlog) != 0) {
        Fail(endpoint, Reason(errno));
    }
    return listener;
}

void CheckAddress(Endpoint const& endpoint) {
    Bind(endpoint, "0");
}

std::string ShownAddress(Endpoint const& endpoint, int listener) {
    sockaddr_storage bound = {};
    socklen_t size = sizeof bound;
    getsockname(listener, reinterpret_cast<sockaddr*>(&bound), &size);
    char port[NI_MAXSERV] = "";
    getnameinfo(reinterpret_cast<sockaddr*>(&bound), size, nullptr, 0, port, sizeof port,
                NI_NUMERICSERV);
    return "http://" + Shown({endpoint.address, port}) + "/";
}

}  // namespace QuilloServer
