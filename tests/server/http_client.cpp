#include "server/http_client.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace {

[[noreturn]] void Fail(char const* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

void Connect(int socket, sockaddr const* address, socklen_t size) {
    if (connect(socket, address, size) != 0) {
        Fail("connect");
    }
}

}  // namespace

std::string Reply::Header(std::string const& name) const {
    std::size_t at = head.find("\r\n");
    while (at != std::string::npos) {
        at += 2;
        std::size_t const end = head.find("\r\n", at);
        std::string const line = head.substr(at, end - at);
        if (strncasecmp(line.c_str(), (name + ": ").c_str(), name.size() + 2) == 0) {
            return line.substr(name.size() + 2);
        }
        at = end;
    }
    return "";
}

bool Reply::Has(std::string const& name) const {
    return strcasestr(head.c_str(), ("\r\n" + name + ":").c_str()) != nullptr;
}

Reply ParseReply(std::string const& text) {
    Reply reply;
    reply.text = text;
    std::size_t const end = text.find("\r\n\r\n");
    if (end != std::string::npos && text.compare(0, 9, "HTTP/1.1 ") == 0) {
        reply.status = std::stoi(text.substr(9, 3));
        reply.head = text.substr(0, end);
        reply.body = text.substr(end + 4);
    }
    return reply;
}

Client::Client(int port, bool isIpv6)
    : socket_(socket(isIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (isIpv6) {
        sockaddr_in6 address = {};
        address.sin6_family = AF_INET6;
        address.sin6_addr = in6addr_loopback;
        address.sin6_port = htons(static_cast<std::uint16_t>(port));
        Connect(socket_.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address);
    } else {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        Connect(socket_.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address);
    }
}

bool Client::Send(std::string const& bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t const count =
            send(socket_.Get(), bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

void Client::EndSending() const {
    shutdown(socket_.Get(), SHUT_WR);
}

std::string Client::ReadUntil(std::string const& mark) const {
    std::string text;
    char byte = 0;
    while ((mark.empty() || text.find(mark) == std::string::npos) &&
           recv(socket_.Get(), &byte, 1, 0) == 1) {
        text += byte;
    }
    return text;
}

std::string Client::ReadAll() const {
    std::string text;
    char bytes[16384];
    ssize_t count = 0;
    while ((count = recv(socket_.Get(), bytes, sizeof bytes, 0)) > 0) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
}

LateClient::LateClient(int port)
    : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    connect(socket_.Get(), reinterpret_cast<sockaddr*>(&address), sizeof address);
}

int LateClient::Outcome() const {
    pollfd watched = {socket_.Get(), POLLOUT, 0};
    poll(&watched, 1, -1);
    int error = 0;
    socklen_t size = sizeof error;
    getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

std::string RequestText(std::string const& path, std::string const& fields,
                        std::string const& method) {
    return method + " " + path + " HTTP/1.1\r\nHost: localhost\r\n" + fields + "\r\n";
}

Reply Ask(int port, std::string const& request) {
    Client const client(port);
    client.Send(request);
    return client.Read();
}

Reply Get(int port, std::string const& path, std::string const& fields) {
    return Ask(port, RequestText(path, fields));
}

std::string FormText(std::string const& path, std::string const& body, std::string const& fields) {
    return RequestText(path,
                       "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                           std::to_string(body.size()) + "\r\n" + fields,
                       "POST") +
           body;
}
