// The head of a request as it lies in a connection: whether the request is there as a whole, and
// whether it is one that the server takes (RFC 9112).
//
//     GET /network?view=traffic HTTP/1.1     the request line: method, target, version
//     Host: 127.0.0.1:8080                   the header's fields
//     Content-Length: 0
//                                            an empty line, and the body
//
// Judging it before anything is read keeps a connection free to go to any worker, and gives every
// refusal the same form. It is judged strictly: line ends are CR and LF, no line is folded, and a
// length is digits and stands there once.
#ifndef QUILLO_SERVER_REQUEST_HEAD_HPP
#define QUILLO_SERVER_REQUEST_HEAD_HPP

#include <cstddef>
#include <string_view>

namespace QuilloServer {

struct HeadJudgement {
    int refusal = 0;                  // the status to refuse it with; 0: nothing wrong so far
    std::size_t size = 0;             // of head and body together; 0: the head is not there yet
    bool isContinueExpected = false;  // the client waits for a word before it sends the body
};

// Judges the first bytes of a request: all that came, but no more than one byte beyond the limit of
// a head need be given.
HeadJudgement JudgeHead(std::string_view bytes);

}  // namespace QuilloServer

#endif
