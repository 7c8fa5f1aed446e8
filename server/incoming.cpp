#include "incoming.hpp"

#include <strings.h>

#include <algorithm>
#include <string_view>

namespace QuilloServer {

void TakeTarget(Incoming& incoming, std::string const& target) {
    constexpr std::string_view scheme = "http://";
    std::string rest = target;
    if (strncasecmp(target.c_str(), scheme.data(), scheme.size()) == 0) {
        std::size_t const end = std::min(target.find_first_of("/?", scheme.size()), target.size());
        incoming.host = target.substr(scheme.size(), end - scheme.size());
        rest = target.substr(end);
    }
    std::size_t const mark = std::min(rest.find('?'), rest.size());
    incoming.path = mark == 0 ? "/" : rest.substr(0, mark);
    incoming.query = rest.substr(std::min(mark + 1, rest.size()));
}

bool IsForm(std::string const& contentType) {
    std::string type = contentType.substr(0, contentType.find(';'));
    type.erase(type.find_last_not_of(" \t") + 1);
    return strcasecmp(type.c_str(), "application/x-www-form-urlencoded") == 0;
}

}  // namespace QuilloServer
