// How much a client may send, and how long things may take.
#ifndef QUILLO_SERVER_LIMITS_HPP
#define QUILLO_SERVER_LIMITS_HPP

#include <cstddef>

namespace QuilloServer {

constexpr std::size_t mostTargetBytes = 8192;  // path and query
constexpr std::size_t mostHeadBytes = 16384;   // request line and header
constexpr int mostFields = 100;                // of the header
constexpr std::size_t mostBodyBytes = 65536;

// How much the system takes of an answer at once, so that it leaves the worker before the next page
// begins, however slowly it is read.
constexpr int sendBufferBytes = 1 << 20;

// Connections whose request is not there yet; a newcomer beyond them ends the one that waits
// longest.
constexpr std::size_t mostGuests = 800;
// Connections of one worker whose answer is read slowly.
constexpr unsigned mostReaders = 800;
// How long an answer may wait for its reader to take any of it.
constexpr unsigned readerPatienceSeconds = 30;
// Refused connections that may go on sending; a newcomer beyond them ends the oldest.
constexpr std::size_t mostLeaving = 100;
// How long a refused client may go on sending before its connection ends.
constexpr int lingerMilliseconds = 2000;

}  // namespace QuilloServer

#endif
