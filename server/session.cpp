#include "session.hpp"

#include <utility>

#include "digests.hpp"

namespace QuilloServer {

char const sessionCookieName[] = "quillo_session";

Sessions::Sessions(std::string secret) : secret_(std::move(secret)) {}

std::string Sessions::Find(Quillo::UriArgs const& cookies) const {
    return IsKnown(cookies) ? cookies.at(sessionCookieName) : Begin();
}

std::string Sessions::Begin() const {
    std::string const name = Hexadecimal(RandomBytes(16));
    return name + "." + Signature(name);
}

bool Sessions::IsKnown(Quillo::UriArgs const& cookies) const {
    auto const cookie = cookies.find(sessionCookieName);
    if (cookie == cookies.end()) {
        return false;
    }
    std::size_t const dot = cookie->second.find('.');
    return dot != std::string::npos &&
           IsSameSecret(cookie->second.substr(dot + 1), Signature(cookie->second.substr(0, dot)));
}

std::string Sessions::Token(std::string const& session) const {
    return KeyedDigest(secret_, "token " + session);
}

std::string Sessions::Signature(std::string const& name) const {
    return KeyedDigest(secret_, "session " + name);
}

std::string SessionCookie(std::string const& session) {
    return std::string(sessionCookieName) + "=" + session + "; Path=/; HttpOnly; SameSite=Strict";
}

}  // namespace QuilloServer
