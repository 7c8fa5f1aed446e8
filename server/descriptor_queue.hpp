// A queue of open descriptors between processes that have a common ancestor: what one puts in, one
// of those that look takes out. It is made before the processes are, and outlives each of them.
#ifndef QUILLO_SERVER_DESCRIPTOR_QUEUE_HPP
#define QUILLO_SERVER_DESCRIPTOR_QUEUE_HPP

#include "descriptor.hpp"

namespace QuilloServer {

class DescriptorQueue {
public:
    // Throws std::system_error when the system has none to give.
    DescriptorQueue();

    // Puts a copy of `descriptor` in. Returns false when the queue is full, and stays so for as
    // long as the caller can wait.
    bool Put(int descriptor, int patienceMilliseconds) const;

    // Takes one out; -1 when there is none.
    int Take() const;

    // Readable when there is something to take, writable when there is room.
    int ReadEnd() const { return readEnd_.Get(); }
    int WriteEnd() const { return writeEnd_.Get(); }

private:
    Descriptor readEnd_;
    Descriptor writeEnd_;
};

}  // namespace QuilloServer

#endif
