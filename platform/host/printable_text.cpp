#include "host/printable_text.hpp"

namespace QuilloHost {

namespace {

// The letter behind the backslash for a byte that has a short escape, else 0.
char EscapeLetter(char byte) noexcept {
    switch (byte) {
        case '\n':
            return 'n';
        case '\t':
            return 't';
        case '\r':
            return 'r';
        case '\\':
            return '\\';
        default:
            return 0;
    }
}

}  // namespace

PrintableByte MakePrintable(char byte) noexcept {
    static char const hexDigits[] = "0123456789abcdef";
    unsigned const code = static_cast<unsigned char>(byte);
    char const letter = EscapeLetter(byte);
    if (letter != 0)
        return {{'\\', letter}, 2};
    if (code < 0x20 || code == 0x7F)
        return {{'\\', 'x', hexDigits[code >> 4], hexDigits[code & 15]}, 4};
    return {{byte}, 1};
}

}  // namespace QuilloHost
