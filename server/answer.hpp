// An answer to a request, before it is written to a connection.
#ifndef QUILLO_SERVER_ANSWER_HPP
#define QUILLO_SERVER_ANSWER_HPP

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace QuilloServer {

struct Answer {
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers = {};  // in the order they are sent
    std::string text = {};
    std::string_view file = {};  // sent in the place of `text` when it is not empty

    std::string_view Body() const { return file.empty() ? std::string_view(text) : file; }
};

// Adds the header fields that every answer has: what a browser may do with it, which is nothing
// but show it, and that the connection ends with it. `policy` is the Content-Security-Policy.
//
// A connection carries one request. Were it kept for a second one, that one would reach the worker
// that holds the connection and no other, and wait behind whatever page that worker is at.
void AddCommonHeaders(Answer& answer, std::string const& policy);

// The words that stand behind a status code in the first line of an answer; empty for a code that
// the server does not use.
std::string ReasonPhrase(int status);

// The whole answer as it is sent, with its date.
std::string Serialized(Answer const& answer);

}  // namespace QuilloServer

#endif
