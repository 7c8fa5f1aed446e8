#include "elements/renderer.hpp"

#include <cstring>

namespace Quillo {
namespace {

char const indentUnit[] = "  ";

// Unformatted output: a width that was set on the stream pads nothing in a page.
Renderer& Write(Renderer& r, char const* bytes, std::size_t size) {
    r.out->write(bytes, static_cast<std::streamsize>(size));
    r.atLineStart = false;
    return r;
}

}  // namespace

Renderer& operator<<(Renderer& r, char const* text) {
    return Write(r, Cstr(text), std::strlen(Cstr(text)));
}

Renderer& operator<<(Renderer& r, std::string const& text) {
    return Write(r, text.data(), text.size());
}

Renderer& operator<<(Renderer& r, int number) {
    *r.out << number;
    r.atLineStart = false;
    return r;
}

Renderer& operator<<(Renderer& r, char byte) {
    return Write(r, &byte, 1);
}

Renderer& operator<<(Renderer& r, Endl const&) {
    return EndLine(r);
}

Renderer& operator<<(Renderer& r, Indent const& indent) {
    if (!r.atLineStart) {
        return r;
    }
    r.atLineStart = false;
    if (isDebug) {
        for (int i = 0; i < indent.level; ++i) {
            r << indentUnit;
        }
    }
    return r;
}

Renderer& EndLine(Renderer& r) {
    *r.out << std::endl;
    r.atLineStart = true;
    return r;
}

}  // namespace Quillo
