#include "elements/plain_text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "elements/small.hpp"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

    bool Has(char c) const {
        unsigned char const byte = static_cast<unsigned char>(c);
        return (bits[byte / 32] >> byte % 32 & 1) != 0;
    }

private:
    std::uint32_t bits[8];
};

constexpr PlainBytes plainBytes;

#ifdef __SSE2__

constexpr std::ptrdiff_t vectorSize = sizeof(__m128i);

// A bit for each of 16 bytes, the first one lowest: set when the byte is not plain.
unsigned NotPlain(char const* text) {
    __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(text));
    auto const equal = [](__m128i a, char b) { return _mm_cmpeq_epi8(a, _mm_set1_epi8(b)); };
    auto const either = [](__m128i a, __m128i b) { return _mm_or_si128(a, b); };
    __m128i const below20 = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(0x1F)), bytes);
    __m128i const control =
        _mm_andnot_si128(either(equal(bytes, '\t'), equal(bytes, '\n')), below20);
    // '<' and '>' differ in one bit alone, and so do '"' and '&'.
    __m128i const bracket = equal(either(bytes, _mm_set1_epi8('<' ^ '>')), '>');
    __m128i const quote = equal(either(bytes, _mm_set1_epi8('"' ^ '&')), '&');
    __m128i const found = either(either(control, equal(bytes, 0x7F)), either(bracket, quote));
    return static_cast<unsigned>(_mm_movemask_epi8(found));
}

// Looks at 16 bytes at a time, the last time at the last 16, some of them again. There must be 16.
char const* EndOfPlainVectors(char const* text, char const* end) {
    char const* const last = end - vectorSize;
    for (char const* p = text;; p = std::min(p + vectorSize, last)) {
        unsigned const found = NotPlain(p);
        if (found != 0) {
            return p + __builtin_ctz(found);
        }
        if (p == last) {
            return end;
        }
    }
}

#endif

}  // namespace

char const* EndOfPlain(char const* text, char const* end) {
#ifdef __SSE2__
    if (!isSmall && end - text >= vectorSize) {
        return EndOfPlainVectors(text, end);
    }
#endif
    while (text != end && plainBytes.Has(*text)) {
        ++text;
    }
    return text;
}

}  // namespace Quillo
