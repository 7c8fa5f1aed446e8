// The socket that clients connect to.
#ifndef QUILLO_SERVER_LISTENER_HPP
#define QUILLO_SERVER_LISTENER_HPP

#include <string>

#include "descriptor.hpp"

namespace QuilloServer {

// Where to listen.
struct Endpoint {
    std::string address;  // without brackets
    std::string port;
};

// Reads "ADDRESS:PORT" or "[ADDRESS]:PORT". Throws std::invalid_argument when it has another form.
Endpoint ParseEndpoint(std::string const& text);

// A socket that listens there and never waits. It gives a connection when the client has sent
// something, or after a second. Throws std::runtime_error when it cannot be had.
Descriptor Listen(Endpoint const& endpoint);

// Throws std::runtime_error unless the address is one of this machine's; whether the port is free
// is not looked at.
void CheckAddress(Endpoint const& endpoint);

// The address as a browser takes it, "http://[::1]:8080/": with the port that the system chose, if
// it was to choose one.
std::string ShownAddress(Endpoint const& endpoint, int listener);

}  // namespace QuilloServer

#endif
