#include "connection.hpp"

#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <string_view>

#include "limits.hpp"
#include "request_head.hpp"

namespace QuilloServer {
namespace {

// How many bytes of the request are there.
std::size_t Available(int socket) {
    int count = 0;
    return ioctl(socket, FIONREAD, &count) == 0 && count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace

Look LookAt(int socket) {
    static char head[mostHeadBytes + 1];
    Look look;
    ssize_t const count = recv(socket, head, sizeof head, MSG_PEEK | MSG_DONTWAIT);
    if (count <= 0) {
        bool const isWaiting = count < 0 && (errno == EAGAIN || errno == EINTR);
        look.arrival = isWaiting ? Arrival::Waiting : Arrival::Gone;
        return look;
    }
    auto const seen = static_cast<std::size_t>(count);
    HeadJudgement const judgement = JudgeHead(std::string_view(head, seen));
    if (judgement.refusal != 0) {
        look.arrival = Arrival::Refused;
        look.refusal = judgement.refusal;
    } else if (judgement.size == 0) {
        look.awaited = seen + 1;
    } else if (Available(socket) >= judgement.size) {
        look.arrival = Arrival::Complete;
    } else {
        look.awaited = judgement.size;
        look.isContinueExpected = judgement.isContinueExpected;
    }
    return look;
}

void AwaitBytes(int socket, std::size_t bytes) {
    int const mark = static_cast<int>(bytes);
    setsockopt(socket, SOL_SOCKET, SO_RCVLOWAT, &mark, sizeof mark);
}

}  // namespace QuilloServer
