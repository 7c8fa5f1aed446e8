// A text made of another one, byte by byte.
#ifndef QUILLO_TEXT_CONVERSION_HPP
#define QUILLO_TEXT_CONVERSION_HPP

#include <cstddef>
#include <cstring>
#include <string>

namespace Quillo {

// How many bytes a byte may become: "&quot;" is the longest there is.
constexpr std::size_t mostOfAByte = 6;

// Writes what the bytes from `p` up to `end` become, and returns where that ends. `to` has room for
// `mostOfAByte` bytes for each of them, all of which may be written to.
typedef char* Conversion(char const* p, char const* end, char* to);

// What `text` becomes, up to its NUL. It is written to the stack a block at a time and appended
// whole: a string that grows with each byte is most of the work otherwise.
std::string Converted(char const* text, Conversion* convert);

// Copies the run from `begin` up to `run` and returns where the copy ends. Of the bytes behind the
// run, up to `end`, some may be copied with it: `to` has room for `end - begin` bytes. Most runs
// are short, and where the processor has vectors a copy of always 16 bytes takes no call.
inline char* CopyRun(char const* begin, char const* run, [[maybe_unused]] char const* end,
                     char* to) {
    std::size_t copied = 0;
#ifdef __SSE2__
    if (end - begin >= 16) {
        copied = 16;
        std::memcpy(to, begin, copied);
    }
#endif
    std::size_t const size = static_cast<std::size_t>(run - begin);
    if (size > copied) {
        std::memcpy(to + copied, begin + copied, size - copied);
    }
    return to + size;
}

}  // namespace Quillo

#endif
