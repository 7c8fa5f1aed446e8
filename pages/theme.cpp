#include "theme.hpp"

#include <algorithm>
#include <iterator>

using QuilloServer::Request;

namespace Pages {
namespace {

char const cookieName[] = "THEME";

}  // namespace

Theme const themes[] = {{"", "Automatic"}, {"light", "Light"}, {"dark", "Dark"}};

bool IsTheme(std::string const& name) {
    return std::any_of(std::begin(themes), std::end(themes),
                       [&](Theme const& theme) { return name == theme.name; });
}

std::string ChosenTheme(Request const& request) {
    auto const cookie = request.cookies.find(cookieName);
    return cookie != request.cookies.end() && IsTheme(cookie->second) ? cookie->second : "";
}

void ChooseTheme(Request& request, std::string const& name) {
    if (name != ChosenTheme(request)) {
        request.newCookies[cookieName] = name;
    }
}

}  // namespace Pages
