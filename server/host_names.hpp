// The names under which a browser may reach this server. A page elsewhere can point a name of its
// own at this address; a request under such a name is refused, whatever it asks for.
#ifndef QUILLO_SERVER_HOST_NAMES_HPP
#define QUILLO_SERVER_HOST_NAMES_HPP

#include <string>
#include <vector>

namespace QuilloServer {

// The name of "NAME:PORT" or "[ADDRESS]:PORT", in lower case and without a dot at its end: "[::1]"
// keeps its brackets. Empty when there is none.
std::string HostName(std::string const& authority);

// The name that a person gives for a host, in the same form: brackets around an IPv6 address may be
// left out. Empty when it is none that a browser could send.
std::string GivenHostName(std::string const& text);

// Whether `host`, the field of that name, is one of `names` or a loopback one, with any port.
bool IsKnownHost(std::string const& host, std::vector<std::string> const& names);

// Whether `origin`, the field of that name, is the one under which `host` was asked for.
bool IsSameOrigin(std::string const& origin, std::string const& host);

}  // namespace QuilloServer

#endif
