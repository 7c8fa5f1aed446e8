#include "elements/plain_text.hpp"

#include <cstdint>

namespace Quillo {
namespace {

// Letters and digits of any locale, the bytes of multi-byte UTF-8 sequences, and all signs but
// those of markup.
constexpr bool IsPlain(unsigned byte) {
    if (byte < 0x20) {
        return byte == '\t' || byte == '\n';
    }
    return byte != '<' && byte != '>' && byte != '&' && byte != '"' && byte != 0x7F;
}

// `IsPlain` of every byte, in a bit each: most of a page is text, and to look that up is half the
// work.
class PlainBytes {
public:
    constexpr PlainBytes() : bits() {
        for (unsigned byte = 0; byte < 0x100; ++byte) {
            bits[byte / 32] |= (IsPlain(byte) ? 1U : 0U) << byte % 32;
        }
    }

    bool Has(unsigned char byte) const { return (bits[byte / 32] >> byte % 32 & 1) != 0; }

private:
    std::uint32_t bits[8];
};

constexpr PlainBytes plainBytes;

}  // namespace

char const* EndOfPlain(char const* text) {
    while (plainBytes.Has(static_cast<unsigned char>(*text))) {
        ++text;
    }
    return text;
}

}  // namespace Quillo
