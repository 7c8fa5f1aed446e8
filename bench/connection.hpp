// A connection to a port of this machine.
#ifndef QUILLO_BENCH_CONNECTION_HPP
#define QUILLO_BENCH_CONNECTION_HPP

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>

// Returns -1 when nobody listens. A `receiveBuffer` of 0 leaves that to the system.
inline int Connected(int port, int receiveBuffer = 0) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    int const client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (receiveBuffer != 0) {
        setsockopt(client, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    }
    bool const isThere =
        connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    if (!isThere) {
        close(client);
    }
    return isThere ? client : -1;
}

#endif
