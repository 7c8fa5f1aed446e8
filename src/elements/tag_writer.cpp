#include "elements/tag_writer.hpp"

#include "elements/renderer.hpp"

namespace Quillo {

TagWriter::TagWriter(Renderer& renderer)
    : r(renderer), room(IsUndisturbed(*renderer.out) ? sizeof buffer : 0), size(0) {}

void TagWriter::AddToFull(std::string_view piece) {
    if (size != 0) {
        End();
    }
    if (piece.size() < room) {
        *this << piece;
    } else {
        WriteBytes(r, piece.data(), piece.size());
    }
}

// A stream that takes too little refuses what comes behind it, as it would have refused the pieces.
void TagWriter::End() {
    if (room != 0) {
        WriteBytes(r, buffer, size);
        size = 0;
    }
}

void TagWriter::EndLine() {
    if (room != 0) {
        *this << '\n';
        WriteLine(r, buffer, size);
        size = 0;
    } else {
        Quillo::EndLine(r);
    }
}

}  // namespace Quillo
