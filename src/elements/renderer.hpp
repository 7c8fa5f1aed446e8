#ifndef QUILLO_ELEMENTS_RENDERER_HPP
#define QUILLO_ELEMENTS_RENDERER_HPP

#include <quillo>

namespace Quillo {

// Writes bytes as they stand. Unformatted output: a width that was set on the stream pads nothing
// in a page.
Renderer& WriteBytes(Renderer& r, char const* bytes, std::size_t size);

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

// What `r << Endl()` does, without an element made for it: a newline and a flush.
Renderer& EndLine(Renderer& r);

}  // namespace Quillo

#endif
