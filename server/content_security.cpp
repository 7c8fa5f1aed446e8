#include "content_security.hpp"

#include <algorithm>
#include <set>

#include "digests.hpp"

namespace QuilloServer {
namespace {

constexpr std::string_view scriptStart = "<script type=\"text/javascript\">";
constexpr std::string_view scriptEnd = "</script>";
constexpr std::string_view styleStart = "<style>";
constexpr std::string_view styleEnd = "</style>";

bool IsNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '_' || byte == '$';
}

bool IsName(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsNameByte);
}

// Takes `part` off the front or off the end of `text`, if it stands there.
bool TakeFront(std::string_view& text, std::string_view part) {
    bool const isThere = text.substr(0, part.size()) == part;
    text.remove_prefix(isThere ? part.size() : 0);
    return isThere;
}

bool TakeBack(std::string_view& text, std::string_view part) {
    bool const isThere =
        text.size() >= part.size() && text.substr(text.size() - part.size()) == part;
    text.remove_suffix(isThere ? part.size() : 0);
    return isThere;
}

// document.FORM.ELEMENT.focus();
bool IsFocusScript(std::string_view script) {
    if (!TakeFront(script, "document.") || !TakeBack(script, ".focus();")) {
        return false;
    }
    std::size_t const dot = script.find('.');
    return dot != std::string_view::npos && IsName(script.substr(0, dot)) &&
           IsName(script.substr(dot + 1));
}

bool IsAnyStyle(std::string_view) {
    return true;
}

// The sources that allow what stands between each `start` and `end` and passes `isAllowed`.
std::string DigestSources(std::string_view html, std::string_view start, std::string_view end,
                          bool (*isAllowed)(std::string_view)) {
    std::string sources;
    std::set<std::string> added;
    for (std::size_t at = html.find(start); at != std::string_view::npos;
         at = html.find(start, at)) {
        at += start.size();
        std::size_t const stop = html.find(end, at);
        if (stop == std::string_view::npos) {
            break;
        }
        std::string_view const inside = html.substr(at, stop - at);
        std::string const source = " 'sha256-" + Sha256Base64(inside) + "'";
        if (isAllowed(inside) && added.insert(source).second) {
            sources += source;
        }
        at = stop;
    }
    return sources;
}

}  // namespace

std::string SecurityPolicy(std::string_view html) {
    std::string_view const head = html.substr(0, html.find("</head>"));
    return "default-src 'none'; connect-src 'self'; img-src 'self'; script-src 'self'" +
           DigestSources(html, scriptStart, scriptEnd, IsFocusScript) + "; style-src 'self'" +
           DigestSources(head, styleStart, styleEnd, IsAnyStyle) +
           "; style-src-attr 'unsafe-inline'; form-action 'self'; base-uri 'none'; "
           "frame-ancestors 'none'";
}

}  // namespace QuilloServer
