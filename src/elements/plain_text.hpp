#ifndef QUILLO_ELEMENTS_PLAIN_TEXT_HPP
#define QUILLO_ELEMENTS_PLAIN_TEXT_HPP

#include <cstdint>
#include <string_view>

#include "elements/marks.hpp"

namespace Quillo {

// What HTML text can hold as it stands: letters and digits of any locale, the bytes of multi-byte
// UTF-8 sequences, and all signs but those of markup.
constexpr bool IsPlain(unsigned byte) {
    if (byte < 0x20) {
        return byte == '\t' || byte == '\n';
    }
    return byte != '<' && byte != '>' && byte != '&' && byte != '"' && byte != 0x7F;
}

// `IsPlain` of every byte, in a bit each: most of a page is text, and to look that up is half the
// work.
struct PlainBytes {
    constexpr PlainBytes() : bits() {
        for (unsigned byte = 0; byte < 0x100; ++byte) {
            bits[byte / 32] |= (IsPlain(byte) ? 1U : 0U) << byte % 32;
        }
    }
    std::uint32_t bits[8];
};

inline constexpr PlainBytes plainBytes;

// A kind of marks: the bytes that are not plain.
struct NotPlain {
    static bool Is(char c) {
        unsigned char const byte = static_cast<unsigned char>(c);
        return (plainBytes.bits[byte / 32] >> byte % 32 & 1) == 0;
    }
#ifdef __SSE2__
    static unsigned InWindow(char const* text) {
        return Window::NotPlain(text);
    }
#endif
};

// What stands in HTML text for a byte that is not plain: an entity; or "_", behind a warning.
// Stands with `Filter`.
std::string_view Replacement(char byte);

}  // namespace Quillo

#endif
