#include "elements/renderer.hpp"

#include <cxxabi.h>

#include <cstring>

namespace Quillo {
namespace {

char const indentUnit[] = "  ";

// What `write` and then `flush` do to an undisturbed stream, the state that they leave it in
// included.
//
// What unwinds an ending thread has no object, so that a reference to it is one to nothing, which
// the sanitizer of undefined behaviour need not tell.
__attribute__((no_sanitize("undefined"))) void WriteToBuffer(std::ostream& out, char const* bytes,
                                                             std::size_t size, bool flush) {
    auto const count = static_cast<std::streamsize>(size);
    bool isWritten = false;
    try {
        isWritten = out.rdbuf()->sputn(bytes, count) == count;
        if (isWritten && !out.good()) {  // by its buffer's own doing
            if (flush) {
                out.flush();
            }
            return;
        }
        if (isWritten && (!flush || out.rdbuf()->pubsync() != -1)) {
            return;
        }
    } catch (abi::__forced_unwind&) {  // the thread ends here
        out.setstate(std::ios_base::badbit);
        throw;
    } catch (...) {
        // The stream is bad, which is all that its owner asked to be told.
    }
    out.setstate(std::ios_base::badbit);
    if (!isWritten && flush) {
        out.flush();
    }
}

}  // namespace

void Write(Renderer& r, char const* bytes, std::size_t size, bool isLine) {
    if (!isSmall && IsUndisturbed(*r.out)) {
        WriteUndisturbed(r, bytes, size, isLine);
        return;
    }
    r.out->write(bytes, static_cast<std::streamsize>(size));
    if (isLine) {
        r.out->flush();
    }
    r.atLineStart = isLine;
}

void WriteUndisturbed(Renderer& r, char const* bytes, std::size_t size, bool isLine) {
    WriteToBuffer(*r.out, bytes, size, isLine);
    r.atLineStart = isLine;
}

Renderer& operator<<(Renderer& r, char const* text) {
    Write(r, Cstr(text), std::strlen(Cstr(text)), false);
    return r;
}

Renderer& operator<<(Renderer& r, std::string const& text) {
    Write(r, text.data(), text.size(), false);
    return r;
}

Renderer& operator<<(Renderer& r, int number) {
    *r.out << number;
    r.atLineStart = false;
    return r;
}

Renderer& operator<<(Renderer& r, char byte) {
    Write(r, &byte, 1, false);
    return r;
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

}  // namespace Quillo
