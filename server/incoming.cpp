#include "incoming.hpp"

#include <strings.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace QuilloServer {
namespace {

std::string Decoded(std::string const& text) {
    return Quillo::PcntDecode(text.c_str(), nullptr);
}

}  // namespace

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

Quillo::UriArgs ReadForm(std::string body) {
    std::replace(body.begin(), body.end(), '+', ' ');
    std::vector<std::string> fields;
    Quillo::Split(body, "&", fields, Quillo::SkipEmpty);
    Quillo::UriArgs form;
    for (std::string const& field : fields) {
        std::size_t const mark = std::min(field.find('='), field.size());
        form[Decoded(field.substr(0, mark))] =
            Decoded(field.substr(std::min(mark + 1, field.size())));
    }
    return form;
}

}  // namespace QuilloServer
