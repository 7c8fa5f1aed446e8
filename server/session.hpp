// Sessions: who may change something. A reader's browser keeps a random name in a cookie that no
// script and no other site can use, and every form carries a token that only the server could have
// made for that name. All workers know the secret that both are made with, so none of it is stored.
//
//     quillo_session=NAME.SIGNATURE      32 and 64 hexadecimal digits
#ifndef QUILLO_SERVER_SESSION_HPP
#define QUILLO_SERVER_SESSION_HPP

#include <quillo>
#include <string>

namespace QuilloServer {

extern char const sessionCookieName[];

class Sessions {
public:
    // `secret` is made once, before the workers are.
    explicit Sessions(std::string secret);

    // The session that the cookies name, or a new one.
    std::string Find(Quillo::UriArgs const& cookies) const;
    std::string Begin() const;

    // Whether the cookies name a session that this server began.
    bool IsKnown(Quillo::UriArgs const& cookies) const;

    // The token of the session in the cookie's value `session`.
    std::string Token(std::string const& session) const;

private:
    std::string Signature(std::string const& name) const;

    std::string secret_;
};

// The value of the header field that lets the browser keep `session` until it is closed.
std::string SessionCookie(std::string const& session);

}  // namespace QuilloServer

#endif
