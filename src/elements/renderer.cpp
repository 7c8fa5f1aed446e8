#include "elements/renderer.hpp"

#include <cstring>

namespace Quillo {
namespace {

char const indentUnit[] = "  ";

}  // namespace

Renderer& WriteBytes(Renderer& r, char const* bytes, std::size_t size) {
    r.out->write(bytes, static_cast<std::streamsize>(size));
    r.atLineStart = false;
    return r;
}

Renderer& operator<<(Renderer& r, char const* text) {
    return WriteBytes(r, Cstr(text), std::strlen(Cstr(text)));
}

Renderer& operator<<(Renderer& r, std::string const& text) {
    return WriteBytes(r, text.data(), text.size());
}

Renderer& operator<<(Renderer& r, int number) {
    *r.out << number;
    r.atLineStart = false;
    return r;
}

Renderer& operator<<(Renderer& r, char byte) {
    return WriteBytes(r, &byte, 1);
}

Renderer& operator<<(Renderer& r, Endl const&) {
    return EndLine(r);
}

Renderer& operator<<(Renderer& r, Indent const& indent) {
    StartLine(r, indent.level);
    return r;
}

void WriteIndent(Renderer& r, int level) {
    for (int i = 0; i < level; ++i) {
        r << indentUnit;
    }
}

Renderer& EndLine(Renderer& r) {
    *r.out << std::endl;
    r.atLineStart = true;
    return r;
}

}  // namespace Quillo
