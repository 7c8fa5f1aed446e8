// Percent encoding and decoding, and backslashes before quotes.
#include <cctype>
#include <cstdint>
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"
#include "text/conversion.hpp"
#include "text/hex_digit.hpp"

namespace Quillo {
namespace {

// How many hex digits stand behind "%u".
constexpr int unicodeDigits = 4;

// How many bytes an escape may become.
constexpr std::size_t mostOfAnEscape = 3;

bool IsBetween(unsigned char byte, unsigned char first, unsigned char last) {
    return byte >= first && byte <= last;
}

// Decided in one step, for which digits a text holds is past guessing.
bool IsHexDigit(char c) {
    constexpr std::uint32_t digits = 0x3FF | 0x3F << ('A' - '0');
    unsigned const byte = static_cast<unsigned char>(c);
    unsigned const upper = byte & ~(byte >> 1 & 0x20);  // from 0x40 up
    unsigned const place = upper - '0';
    return place < 32 && (digits >> place & 1) != 0;
}

// The value of a digit. The letters of either case lie from 0x40 up, and 9 behind their values
// there.
unsigned DigitValue(char digit) {
    unsigned const byte = static_cast<unsigned char>(digit);
    return (byte & 0xF) + (byte >> 6) * 9;
}

// Letters and digits are those of the process's locale, whose first half is ASCII.
bool IsUriSafe(unsigned char byte) {
    return IsBetween(byte | 0x20, 'a', 'z') ||
           IsBetween(byte, '-', '9') ||  // '-', '.', '/' and the digits
           byte == '_' || (byte >= 0x80 && std::isalnum(byte) != 0);
}

// The upper case digit of a value below 16.
char HexDigit(int value) {
    return static_cast<char>(value < 10 ? '0' + value : 'A' - 10 + value);
}

char* EncodeByte(char c, char* to) {
    unsigned char const byte = static_cast<unsigned char>(c);
    if (IsUriSafe(byte)) {
        *to++ = c;
    } else {
        *to++ = '%';
        *to++ = HexDigit(byte >> 4);
        *to++ = HexDigit(byte & 0xF);
    }
    return to;
}

#ifdef __SSE2__

// Encodes the bytes of a window up to the last one that is not safe, or all of them where all are,
// and returns where it stopped.
char const* EncodeWindow(char const* window, char const* end, char*& to) {
    unsigned notSafe = Window::NotSafe(window);
    char const* p = window;
    for (; notSafe != 0; notSafe &= notSafe - 1) {
        char const* const run = p;
        p = window + __builtin_ctz(notSafe);
        to = EncodeByte(*p, CopyRun(run, p, end, to));
        ++p;
    }
    if (p == window) {
        p += Window::size;
        to = CopyRun(window, p, end, to);
    }
    return p;
}

#endif

char* Encode(char const* p, char const* end, char* to) {
#ifdef __SSE2__
    while (end - p >= Window::size) {
        p = EncodeWindow(p, end, to);
    }
#endif
    while (p != end) {
        to = EncodeByte(*p++, to);
    }
    return to;
}

char* WriteByte(unsigned byte, char* to) {
    *to = static_cast<char>(byte);
    return to + 1;
}

// Writes a UTF-16 code unit as UTF-8, a surrogate like any other.
char* WriteUtf8(unsigned unit, char* to) {
    if (unit < 0x80) {
        return WriteByte(unit, to);
    }
    if (unit < 0x800) {
        *to++ = static_cast<char>(0xC0 | unit >> 6);
    } else {
        *to++ = static_cast<char>(0xE0 | unit >> 12);
        *to++ = static_cast<char>(0x80 | (unit >> 6 & 0x3F));
    }
    *to++ = static_cast<char>(0x80 | (unit & 0x3F));
    return to;
}

// What stands behind a '%': a value of 0 ends the text, which is how a malformed escape is met.
struct Escape {
    unsigned value;
    char const* end;
};

// Reads the digits behind "%u", of which `p` is the first. A digit that is none counts as 0, and so
// does one that the end of the text leaves out.
Escape ReadUnicode(char const* p) {
    unsigned unit = 0;
    for (int i = 0; i < unicodeDigits; ++i) {
        unit <<= 4;
        if (*p != '\0') {
            unit |= static_cast<unsigned>(HexDigitValue(*p++));
        }
    }
    return {unit, p};
}

// Reads the one or two digits behind a '%', of which `p` is the first. No digit at all is 0.
Escape ReadByte(char const* p) {
    if (!IsHexDigit(p[0])) {
        return {0, p};
    }
    if (!IsHexDigit(p[1])) {
        return {DigitValue(p[0]), p + 1};
    }
    return {DigitValue(p[0]) << 4 | DigitValue(p[1]), p + 2};
}

struct PercentSign {
    static bool Is(char c) { return c == '%'; }
#ifdef __SSE2__
    static unsigned InWindow(char const* text) {
        return Window::PercentSigns(text);
    }
#endif
};

// Decodes the escapes that begin before `end`, and all bytes between them.
char* Decode(char const* p, char const* end, char* to) {
    Marks<PercentSign> signs(p, end);
    while (p < end) {
        char const* const sign = signs.From(p);
        to = CopyRun(p, sign, end, to);
        if (sign == end) {
            break;
        }
        bool const isUnicode = sign[1] == 'u';
        Escape const escape = isUnicode ? ReadUnicode(sign + 2) : ReadByte(sign + 1);
        if (escape.value == 0) {
            break;
        }
        to = isUnicode ? WriteUtf8(escape.value, to) : WriteByte(escape.value, to);
        p = escape.end;
    }
    return to;
}

// How many bytes stand before `end` and before the NUL.
std::size_t LengthUpTo(char const* text, char const* end) {
    if (end == nullptr) {
        return std::strlen(text);
    }
    return text < end ? strnlen(text, static_cast<std::size_t>(end - text)) : 0;
}

// Writes the bytes, each that is `quote`, a double quote or a backslash behind a backslash.
char* Slash(char const* p, char const* end, char* to, char quote) {
    for (; p != end; ++p) {
        if (*p == quote || *p == '"' || *p == '\\') {
            *to++ = '\\';
        }
        *to++ = *p;
    }
    return to;
}

char* SlashQuotes(char const* p, char const* end, char* to) {
    return Slash(p, end, to, '\'');
}

char* SlashDoubleQuotes(char const* p, char const* end, char* to) {
    return Slash(p, end, to, '"');
}

}  // namespace

int HexDigitValue(char c) {
    return IsHexDigit(c) ? static_cast<int>(DigitValue(c)) : 0;
}

std::string PcntEncode(char const* text) {
    return Converted(text, Encode);
}

std::string PcntDecode(char const* begin, char const* end) {
    std::size_t const length = LengthUpTo(begin, end);
    // No escape is shorter than what it becomes, but the last one may begin with the last byte.
    std::string decoded(length + mostOfAnEscape - 1, '\0');
    char const* const last = Decode(begin, begin + length, decoded.data());
    decoded.resize(static_cast<std::size_t>(last - decoded.data()));
    if (decoded.size() < decoded.capacity() / 2) {
        decoded.shrink_to_fit();
    }
    return decoded;
}

std::string AddSlashes(char const* text) {
    return Converted(text, SlashQuotes);
}

std::string EscapeJavascriptString(std::string const& text) {
    if (text.find_first_of("\"\\") == std::string::npos) {
        return text;
    }
    return Converted(text.c_str(), SlashDoubleQuotes);
}

}  // namespace Quillo
