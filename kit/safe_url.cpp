// A URL as a browser would read it, and only if it is one that may be followed.
#include <algorithm>

#include "quillo_kit/safe.hpp"

namespace QuilloKit {
namespace {

bool IsControlOrBlank(char c) {
    return static_cast<unsigned char>(c) <= 0x20;
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

std::string Trimmed(std::string const& url) {
    auto const isKept = [](char c) { return !IsControlOrBlank(c); };
    auto const begin = std::find_if(url.begin(), url.end(), isKept);
    auto const end = std::find_if(url.rbegin(), std::make_reverse_iterator(begin), isKept).base();
    return std::string(begin, end);
}

std::string WithoutLineBreaksAndTabs(std::string const& url) {
    std::string line;
    for (char const c : url) {
        if (c != '\t' && c != '\n' && c != '\r') {
            line += c;
        }
    }
    return line;
}

std::string InLowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return text;
}

// What stands ahead of the first ':' is a scheme, unless a '/', '?' or '#' stands ahead of that.
bool IsOfAllowedKind(std::string const& url) {
    std::size_t const end = url.find_first_of(":/?#");
    if (end == std::string::npos || url[end] != ':') {
        return true;
    }
    std::string const scheme = InLowerCase(url.substr(0, end));
    return scheme == "http" || scheme == "https" || scheme == "mailto";
}

}  // namespace

std::string SafeUrl(std::string const& url) {
    std::string const read = WithoutLineBreaksAndTabs(Trimmed(url));
    bool const hasControl = std::any_of(read.begin(), read.end(), IsControl);
    return hasControl || !IsOfAllowedKind(read) ? "#" : SafeAttr(read);
}

}  // namespace QuilloKit
