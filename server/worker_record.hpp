// What the supervisor knows of a worker: memory that both see, so that it can still be read when
// the worker is gone.
#ifndef QUILLO_SERVER_WORKER_RECORD_HPP
#define QUILLO_SERVER_WORKER_RECORD_HPP

#include <chrono>
#include <cstdint>

namespace QuilloServer {

struct WorkerRecord {
    bool hasServed;  // any page at all
    bool isInPage;   // what follows is of the page it is at
    char page[64];   // its name and the request's path, cut when they are longer
    char path[256];
    std::int64_t pageBegan;  // by MillisecondsNow
};

// By a clock that all processes share.
inline std::int64_t MillisecondsNow() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace QuilloServer

#endif
