#include "elements/tag_writer.hpp"

#include <cxxabi.h>

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
    : r(renderer), room(IsPlain(*renderer.out) ? sizeof buffer : 0), size(0), lastPiece(0) {}

void TagWriter::AddToFull(std::string_view piece) {
    if (room != 0) {
        WriteCollected(false);
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
        WriteCollected(false);
    }
}

void TagWriter::EndLine() {
    if (room == 0) {
        Quillo::EndLine(r);
        return;
    }
    *this << '\n';
    if (room != 0) {
        WriteCollected(true);
    }
    r.atLineStart = true;
}

// A stream whose buffer takes too little, or throws, is bad; and it has failed as well when another
// piece, or the flush, was to follow.
void TagWriter::WriteCollected(bool isFlushing) {
    std::size_t taken = 0;
    bool isFlushed = !isFlushing;
    try {
        std::streambuf& to = *r.out->rdbuf();
        taken = static_cast<std::size_t>(to.sputn(buffer, static_cast<std::streamsize>(size)));
        if (taken == size && isFlushing) {
            isFlushed = to.pubsync() != -1;
        }
    } catch (abi::__forced_unwind const&) {
        r.out->setstate(std::ios_base::badbit);
        throw;  // the thread is being cancelled
    } catch (...) {
        // Neither taken nor flushed: the stream is one that does not throw.
    }
    if (taken < size || !isFlushed) {
        bool const isFollowed = taken < lastPiece || (isFlushing && taken < size);
        r.out->setstate(isFollowed ? std::ios_base::badbit | std::ios_base::failbit
                                   : std::ios_base::badbit);
        room = 0;
    }
    size = 0;
    r.atLineStart = false;
}

}  // namespace Quillo
