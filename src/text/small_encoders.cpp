// In the place of encoders.cpp, in the small library: the same, a byte at a time.
#include <cctype>
#include <cstring>
#include <quillo>

#include "text/hex_digit.hpp"

namespace Quillo {
namespace {

// How many hex digits stand behind "%u".
constexpr int unicodeDigits = 4;

bool IsHexDigit(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// Letters and digits are those of the process's locale.
bool IsUriSafe(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '/' || c == '.' || c == '_' ||
           c == '-';
}

void AppendEscape(char c, std::string& encoded) {
    static char const digits[] = "0123456789ABCDEF";
    unsigned char const byte = static_cast<unsigned char>(c);
    encoded += '%';
    encoded += digits[byte >> 4];
    encoded += digits[byte & 0xF];
}

// Appends a UTF-16 code unit as UTF-8, a surrogate like any other.
void AppendUtf8(unsigned unit, std::string& text) {
    if (unit < 0x80) {
        text += static_cast<char>(unit);
    } else if (unit < 0x800) {
        text += static_cast<char>(0xC0 | unit >> 6);
        text += static_cast<char>(0x80 | (unit & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | unit >> 12);
        text += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (unit & 0x3F));
    }
}

// Decodes the digits behind "%u", of which `p` is the first, and returns where they end. A digit
// that is none counts as 0, and so does one that the end of the text leaves out.
char const* DecodeUnicode(char const* p, std::string& decoded) {
    unsigned unit = 0;
    for (int i = 0; i < unicodeDigits; ++i) {
        unit <<= 4;
        if (*p != '\0') {
            unit |= static_cast<unsigned>(HexDigitValue(*p++));
        }
    }
    AppendUtf8(unit, decoded);
    return p;
}

// Decodes the one or two digits behind a '%', of which `p` is the first, and returns where they
// end. No digit at all gives the byte 0.
char const* DecodeByte(char const* p, std::string& decoded) {
    int value = 0;
    for (int i = 0; i < 2 && IsHexDigit(*p); ++i) {
        value = value * 16 + HexDigitValue(*p++);
    }
    decoded += static_cast<char>(value);
    return p;
}

// Copies up to the NUL, with a backslash before each byte that is one of `special`.
std::string Backslashed(char const* text, char const* special) {
    std::string escaped;
    for (char const* p = text; *p != '\0'; ++p) {
        if (std::strchr(special, *p) != nullptr) {
            escaped += '\\';
        }
        escaped += *p;
    }
    return escaped;
}

}  // namespace

int HexDigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return 0;
}

std::string PcntEncode(char const* text) {
    std::string encoded;
    for (char const* p = text; *p != '\0'; ++p) {
        if (IsUriSafe(*p)) {
            encoded += *p;
        } else {
            AppendEscape(*p, encoded);
        }
    }
    return encoded;
}

std::string PcntDecode(char const* begin, char const* end) {
    std::string decoded;
    char const* p = begin;
    while (*p != '\0' && (end == nullptr || p < end)) {
        if (*p != '%') {
            decoded += *p++;
        } else if (p[1] == 'u') {
            p = DecodeUnicode(p + 2, decoded);
        } else {
            p = DecodeByte(p + 1, decoded);
        }
    }
    // A decoded zero byte ends the text: that is how a malformed escape is met.
    return decoded.c_str();
}

std::string AddSlashes(char const* text) {
    return Backslashed(text, "\\\"'");
}

std::string EscapeJavascriptString(std::string const& text) {
    if (text.find_first_of("\"\\") == std::string::npos) {
        return text;
    }
    return Backslashed(text.c_str(), "\\\"");
}

}  // namespace Quillo
