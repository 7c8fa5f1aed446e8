#include "elements/tag_writer.hpp"

#include "elements/renderer.hpp"

namespace Quillo {

void TagWriter::AddToFull(std::string_view piece) {
    if (to != buffer) {
        WriteCollected(false);
        to = buffer;
        LookAtStream();
    }
    if (piece.size() < Room()) {
        to = CopyPiece(to, piece);
    } else {
        Write(r, piece.data(), piece.size(), false);
        LookAtStream();
    }
}

void TagWriter::End() {
    if (to != buffer) {
        WriteCollected(false);
    }
}

void TagWriter::EndLine() {
    if (IsCollecting()) {
        *to++ = '\n';
        WriteCollected(true);
    } else {
        Quillo::EndLine(r);
    }
}

void TagWriter::LookAtStream() {
    if (!isSmall && IsCollecting() && !IsUndisturbed(*r.out)) {
        if (to != buffer) {
            Write(r, buffer, static_cast<std::size_t>(to - buffer), false);
            to = buffer;
        }
        end = buffer;
    }
}

}  // namespace Quillo
