// What a client is told when it does not get what it asked for.
#ifndef QUILLO_SERVER_REFUSALS_HPP
#define QUILLO_SERVER_REFUSALS_HPP

#include "answer.hpp"

namespace QuilloServer {

// The whole answer for a status code from 400 up: a page in plain words, which shows nothing of the
// server's inside.
Answer Refusal(int status);

// The refusal of a method, with those that would do: "GET, HEAD, POST".
Answer MethodRefusal(std::string const& allowed);

}  // namespace QuilloServer

#endif
