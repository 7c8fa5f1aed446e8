// Each descriptor travels beside one byte of a packet (unix(7), SCM_RIGHTS).
#include "descriptor_queue.hpp"

#include <poll.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <system_error>

namespace QuilloServer {
namespace {

// A packet of one byte, and room for one descriptor beside it.
struct Packet {
    char byte = 0;
    iovec bytes = {&byte, 1};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr message = {};

    Packet() {
        message.msg_iov = &bytes;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
    }
};

}  // namespace

DescriptorQueue::DescriptorQueue() {
    int ends[2] = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0) {
        throw std::system_error(errno, std::generic_category(), "no queue can be made");
    }
    readEnd_ = Descriptor(ends[0]);
    writeEnd_ = Descriptor(ends[1]);
}

bool DescriptorQueue::Put(int descriptor, int patienceMilliseconds) const {
    Packet packet;
    cmsghdr* const head = CMSG_FIRSTHDR(&packet.message);
    head->cmsg_level = SOL_SOCKET;
    head->cmsg_type = SCM_RIGHTS;
    head->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(head), &descriptor, sizeof descriptor);
    bool const isPut = sendmsg(writeEnd_.Get(), &packet.message, MSG_NOSIGNAL) == 1;
    pollfd watched = {writeEnd_.Get(), POLLOUT, 0};
    if (isPut || errno != EAGAIN || poll(&watched, 1, patienceMilliseconds) <= 0) {
        return isPut;
    }
    return sendmsg(writeEnd_.Get(), &packet.message, MSG_NOSIGNAL) == 1;
}

int DescriptorQueue::Take() const {
    Packet packet;
    if (recvmsg(readEnd_.Get(), &packet.message, MSG_CMSG_CLOEXEC) != 1) {
        return -1;
    }
    // A packet comes without its descriptor when this process may have no more of them.
    cmsghdr* const head = CMSG_FIRSTHDR(&packet.message);
    int descriptor = -1;
    if (head != nullptr && head->cmsg_type == SCM_RIGHTS) {
        std::memcpy(&descriptor, CMSG_DATA(head), sizeof descriptor);
    }
    return descriptor;
}

}  // namespace QuilloServer
