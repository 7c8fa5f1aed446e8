// Sixteen bytes looked at together: a bit for each, the first one lowest. Where the processor has
// no such instructions there are no windows, and texts are read a byte at a time.
#ifndef QUILLO_ELEMENTS_WINDOW_HPP
#define QUILLO_ELEMENTS_WINDOW_HPP

#ifdef __SSE2__
#include <emmintrin.h>

#include <cstddef>

namespace Quillo::Window {

constexpr std::ptrdiff_t size = sizeof(__m128i);

inline __m128i Load(char const* text) {
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(text));
}

inline unsigned Bits(__m128i found) {
    return static_cast<unsigned>(_mm_movemask_epi8(found));
}

inline __m128i IsBetween(__m128i bytes, char first, char last) {
    __m128i const above = _mm_sub_epi8(bytes, _mm_set1_epi8(first));
    __m128i const most = _mm_set1_epi8(static_cast<char>(last - first));
    return _mm_cmpeq_epi8(_mm_min_epu8(above, most), above);
}

inline __m128i Is(__m128i bytes, char byte) {
    return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
}

inline __m128i Either(__m128i a, __m128i b) {
    return _mm_or_si128(a, b);
}

inline unsigned PercentSigns(char const* text) {
    return Bits(Is(Load(text), '%'));
}

// The bytes that HTML text cannot hold as they stand. '<' and '>' differ in one bit alone, and '"'
// and '&' do as well.
inline unsigned NotPlain(char const* text) {
    __m128i const bytes = Load(text);
    __m128i const blank = Either(Is(bytes, '\t'), Is(bytes, '\n'));
    __m128i const control = _mm_andnot_si128(blank, IsBetween(bytes, 0, 0x1F));
    __m128i const bracket = Is(Either(bytes, _mm_set1_epi8('<' ^ '>')), '>');
    __m128i const other = Is(Either(bytes, _mm_set1_epi8('"' ^ '&')), '&');
    return Bits(Either(Either(control, Is(bytes, 0x7F)), Either(bracket, other)));
}

// The bytes that are not safe in a URI in every locale.
inline unsigned NotSafe(char const* text) {
    __m128i const bytes = Load(text);
    __m128i const letter = IsBetween(Either(bytes, _mm_set1_epi8(0x20)), 'a', 'z');
    __m128i const digitOrSign = IsBetween(bytes, '-', '9');
    return Bits(Either(Either(letter, digitOrSign), Is(bytes, '_'))) ^ 0xFFFF;
}

}  // namespace Quillo::Window

#endif

#endif
