#include "host_names.hpp"

#include <algorithm>
#include <string_view>

namespace QuilloServer {
namespace {

char Lower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

std::string Lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), Lower);
    return text;
}

// ":PORT" or nothing.
bool IsPort(std::string const& text) {
    return text.empty() ||
           (text[0] == ':' && text.find_first_not_of("0123456789", 1) == std::string::npos);
}

// A byte of a name or an address, the brackets around one included.
bool IsNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           std::string_view("-._:[]").find(byte) != std::string_view::npos;
}

bool EndsWithDot(std::string const& name) {
    return !name.empty() && name.back() == '.';
}

}  // namespace

std::string HostName(std::string const& authority) {
    std::size_t const bracket = authority.find(']');
    std::size_t const end = authority[0] == '[' && bracket != std::string::npos
                                ? bracket + 1
                                : std::min(authority.find(':'), authority.size());
    std::string name = Lowered(authority.substr(0, end));
    if (EndsWithDot(name)) {
        name.pop_back();
    }
    return IsPort(authority.substr(end)) && !EndsWithDot(name) ? name : "";
}

std::string GivenHostName(std::string const& text) {
    bool const isBareIpv6 = text[0] != '[' && text.find(':') != text.rfind(':');
    std::string const name = HostName(isBareIpv6 ? "[" + text + "]" : text);
    return std::all_of(name.begin(), name.end(), IsNameByte) ? name : "";
}

bool IsKnownHost(std::string const& host, std::vector<std::string> const& names) {
    std::string const name = HostName(host);
    if (name == "localhost" || name == "127.0.0.1" || name == "[::1]") {
        return true;
    }
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool IsSameOrigin(std::string const& origin, std::string const& host) {
    std::string const shown = Lowered(origin);
    std::string const asked = Lowered(host);
    return shown == "http://" + asked || shown == "https://" + asked;
}

}  // namespace QuilloServer
