// Text as an attribute's value, as a string of a script, and as a name.
#include <cstdio>
#include <quillo>
#include <stdexcept>

#include "quillo_kit/safe.hpp"

namespace QuilloKit {
namespace {

// U+2028 and U+2029 are E2 80 A8 and E2 80 A9.
bool IsLineSeparator(std::string const& text, std::size_t at) {
    return text.compare(at, 3, "\xE2\x80\xA8") == 0 || text.compare(at, 3, "\xE2\x80\xA9") == 0;
}

bool IsEscapedByNumber(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '<';
}

std::string UnicodeEscape(unsigned code) {
    char escape[sizeof "\\u0000"];
    std::snprintf(escape, sizeof escape, "\\u%04X", code & 0xFFFF);
    return escape;
}

bool IsNameByte(char c, bool isFirst) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
           (!isFirst && c >= '0' && c <= '9');
}

}  // namespace

std::string SafeAttr(std::string const& text) {
    std::string value;
    for (char const c : Quillo::Filter(text)) {
        value += c == '\'' ? "&#39;" : std::string(1, c);
    }
    return value;
}

std::string JsString(std::string const& text) {
    std::string js = "\"";
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsEscapedByNumber(text[i])) {
            js += UnicodeEscape(static_cast<unsigned char>(text[i]));
        } else if (IsLineSeparator(text, i)) {
            js += text[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
            i += 2;
        } else {
            js += Quillo::EscapeJavascriptString(std::string(1, text[i]));
        }
    }
    return js + '"';
}

std::string SafeName(std::string const& name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (!IsNameByte(name[i], i == 0)) {
            throw std::invalid_argument("SafeName: byte " + std::to_string(i) + " of " +
                                        std::to_string(name.size()) +
                                        " is wrong; a name is a letter or '_', and then letters, "
                                        "digits and '_'");
        }
    }
    if (name.empty()) {
        throw std::invalid_argument("SafeName: the name is empty; it needs a letter or '_' first");
    }
    return name;
}

}  // namespace QuilloKit
