// A connection whose request is still in the system's hands: it is looked at, but not read, so that
// it may go to any process of the server.
#ifndef QUILLO_SERVER_CONNECTION_HPP
#define QUILLO_SERVER_CONNECTION_HPP

#include <cstddef>

namespace QuilloServer {

enum class Arrival {
    Waiting,   // more has to come
    Complete,  // the whole request can be read without waiting
    Refused,   // it will not be served
    Gone       // nothing will come any more
};

struct Look {
    Arrival arrival = Arrival::Waiting;
    int refusal = 0;                  // Refused: the status
    std::size_t awaited = 1;          // Waiting: how many bytes have to be there to look again
    bool isContinueExpected = false;  // Waiting: the client waits for a word before it goes on
};

// Looks at the request that lies in `socket`, which does not block.
Look LookAt(int socket);

// Lets the system report `socket` as readable from `bytes` bytes on. When that fails it is reported
// earlier, and looked at more often.
void AwaitBytes(int socket, std::size_t bytes);

}  // namespace QuilloServer

#endif
