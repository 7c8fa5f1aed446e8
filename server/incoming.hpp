// A request as it came in.
#ifndef QUILLO_SERVER_INCOMING_HPP
#define QUILLO_SERVER_INCOMING_HPP

#include <quillo>
#include <string>

namespace QuilloServer {

struct Incoming {
    std::string method = {};
    std::string path = {};   // as it was sent, percent escapes and all
    std::string query = {};  // the same, without the '?'
    std::string host = {};
    std::string origin = {};
    std::string languages = {};  // Accept-Language
    std::string knownTags = {};  // If-None-Match
    std::string contentType = {};
    Quillo::UriArgs cookies = {};
    Quillo::UriArgs form = {};
};

// Puts path and query of a request's target in their place. Of a target in absolute form, such as
// "http://host/path", the host replaces that of the header (RFC 9112, 3.2.2).
void TakeTarget(Incoming& incoming, std::string const& target);

// Whether the body is a form of the one kind that is taken, application/x-www-form-urlencoded.
bool IsForm(std::string const& contentType);

// The fields of such a body, of a repeated one the last, decoded as the library decodes.
//
//     a=1&b=x+y%3Dz&c    a: 1, b: "x y=z", c: ""
Quillo::UriArgs ReadForm(std::string body);

}  // namespace QuilloServer

#endif
