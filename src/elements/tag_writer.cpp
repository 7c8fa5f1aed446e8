#include "elements/tag_writer.hpp"

#include "elements/renderer.hpp"

namespace Quillo {
namespace {

bool IsPlain(std::ostream const& stream) {
    return stream.good() && stream.tie() == nullptr &&
           (stream.flags() & std::ios_base::unitbuf) == 0 &&
           stream.exceptions() == std::ios_base::goodbit;
}

}  // namespace

TagWriter::TagWriter(Renderer& renderer)
    : r(renderer), room(IsPlain(*renderer.out) ? sizeof buffer : 0), size(0) {}

void TagWriter::AddToFull(std::string_view piece) {
    if (room != 0) {
        WriteCollected();
    }
    if (piece.size() < room) {
        *this << piece;
    } else {
        WriteBytes(r, piece.data(), piece.size());
        room = r.out->good() ? room : 0;
    }
}

void TagWriter::End() {
    if (room != 0) {
        WriteCollected();
    }
}

void TagWriter::EndLine() {
    if (room != 0) {
        *this << '\n';
        End();
        r.out->flush();
        r.atLineStart = true;
    } else {
        Quillo::EndLine(r);
    }
}

// A stream that does not take them all is bad, and has failed as well: the pieces behind the one
// that was too much would have been refused.
void TagWriter::WriteCollected() {
    WriteBytes(r, buffer, size);
    size = 0;
    if (!r.out->good()) {
        r.out->setstate(std::ios_base::failbit);
        room = 0;
    }
}

}  // namespace Quillo
