#ifndef QUILLO_ELEMENTS_RENDERER_HPP
#define QUILLO_ELEMENTS_RENDERER_HPP

#include <quillo>

#include "elements/small.hpp"

namespace Quillo {

// True of a stream to which a write of some bytes is the same as a write of each of them. A stream
// that is tied or unit-buffered is flushed with every write, one that throws breaks off at a
// certain piece, and one that has failed refuses each of them.
inline bool IsUndisturbed(std::ostream const& stream) {
    return stream.good() && stream.tie() == nullptr &&
           (stream.flags() & std::ios_base::unitbuf) == 0 &&
           stream.exceptions() == std::ios_base::goodbit;
}

// Writes bytes as they stand. `isLine`: the last of them ends a line, and a flush follows.
// Unformatted output: a width that was set on the stream pads nothing in a page.
void Write(Renderer& r, char const* bytes, std::size_t size, bool isLine);

// The same to a stream that is undisturbed.
void WriteUndisturbed(Renderer& r, char const* bytes, std::size_t size, bool isLine);

// What `r << Endl()` does, without an element made for it.
inline Renderer& EndLine(Renderer& r) {
    Write(r, "\n", 1, true);
    return r;
}

// What `r << Indent(level)` does, without a call where it does nothing.
void WriteIndent(Renderer& r, int level);
inline void StartLine(Renderer& r, int level) {
    if (r.atLineStart) {
        r.atLineStart = false;
        if (isDebug) {
            WriteIndent(r, level);
        }
    }
}

}  // namespace Quillo

#endif
