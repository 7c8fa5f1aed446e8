// The lobby: the process that keeps the connections whose request is not there yet, so that no
// worker has to. A worker that accepts such a connection brings it here; when the request is there
// as a whole, the lobby puts the connection into the queue that idle workers take from. So a worker
// holds no request but the one it is at, and what stops a worker stops no other request.
//
//     client ── listening socket ── worker ── answer
//                                   │    ↑
//                     not there yet ↓    │ there
//                                   lobby
//
// Whatever will not be served, the lobby refuses itself: too long, not HTTP, too slow.
#ifndef QUILLO_SERVER_LOBBY_HPP
#define QUILLO_SERVER_LOBBY_HPP

#include "descriptor_queue.hpp"

namespace QuilloServer {

struct LobbySettings {
    DescriptorQueue const& arrivals;  // to the lobby
    DescriptorQueue const& ready;     // to the workers
    int patienceMilliseconds;         // how long a request may take to arrive
};

// Runs until the process is told to stop (signals.hpp), and refuses those that then still wait.
void RunLobby(LobbySettings const& settings);

// Refuses the connections that were brought to a lobby when it was gone: the server is stopping.
void RefuseArrivals(DescriptorQueue const& arrivals);

}  // namespace QuilloServer

#endif
