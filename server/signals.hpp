// The signals of a process that serves. They are blocked, so that none of them comes into a page,
// and read from a descriptor when the process waits: SIGTERM lets it end what it has begun, SIGHUP
// lets it open its log anew.
#ifndef QUILLO_SERVER_SIGNALS_HPP
#define QUILLO_SERVER_SIGNALS_HPP

namespace QuilloServer {

// Blocks them. To be called first in each process that serves. Throws std::system_error when there
// is no descriptor for them.
void TakeSignals();

// Readable when there is one of them to read.
int SignalDescriptor();

// Reads those that have come, and opens the log anew if one of them asks for it.
void ReadSignals();

// Whether SIGTERM was read.
bool IsStopping();

}  // namespace QuilloServer

#endif
