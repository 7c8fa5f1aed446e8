#ifndef QUILLO_ELEMENTS_TAG_WRITER_HPP
#define QUILLO_ELEMENTS_TAG_WRITER_HPP

#include <cstring>
#include <quillo>
#include <string_view>

#include "elements/renderer.hpp"

namespace Quillo {

// Copies a piece of `count` to twice `count` bytes by its two ends, which may overlap.
template <std::size_t count>
void CopyEnds(char* to, std::string_view piece) {
    std::memcpy(to, piece.data(), count);
    std::memcpy(to + piece.size() - count, piece.data() + piece.size() - count, count);
}

// Copies a piece and returns where it ends. Most are so short that a call of memcpy would cost more
// than the copy.
inline char* CopyPiece(char* to, std::string_view piece) {
    if (isSmall || piece.size() > 32) {
        std::memcpy(to, piece.data(), piece.size());
    } else if (piece.size() >= 8) {
        if (piece.size() >= 16) {
            CopyEnds<16>(to, piece);
        } else {
            CopyEnds<8>(to, piece);
        }
    } else if (piece.size() >= 4) {
        CopyEnds<4>(to, piece);
    } else if (piece.size() >= 2) {
        CopyEnds<2>(to, piece);
    } else if (!piece.empty()) {
        *to = piece.front();
    }
    return to + piece.size();
}

// The pieces of a tag, of a text, or of a text and the tag behind it, on their way to the stream,
// and the line end behind them.
//
// They are collected, and reach the stream in one write, where a buffer that takes bytes one after
// the other cannot tell that from a write for each piece. Any other stream gets every piece by
// itself.
//
// Has a buffer in it: not for a stack frame below which a tree is written.
class TagWriter {
public:
    static constexpr std::size_t capacity = 512;

    explicit TagWriter(Renderer& renderer)
        : r(renderer), to(buffer), end(buffer + (IsUndisturbed(*renderer.out) ? capacity : 0)) {}
    TagWriter(TagWriter const&) = delete;
    TagWriter& operator=(TagWriter const&) = delete;

    bool IsCollecting() const { return end != buffer; }

    TagWriter& operator<<(std::string_view piece) {
        if (piece.size() < Room()) {
            to = CopyPiece(to, piece);
        } else {
            AddToFull(piece);
        }
        return *this;
    }

    // Pieces one behind the other. There is room for all of them, except in a few tags.
    template <class... Pieces>
    void Add(Pieces const&... pieces) {
        if (isSmall || (pieces.size() + ...) >= Room()) {
            (*this << ... << pieces);
        } else {
            char* next = to;
            ((next = CopyPiece(next, pieces)), ...);
            to = next;
        }
    }

    // To be called when page code has run: a report, or a write, may have disturbed the stream.
    void LookAtStream();

    // Ends the tag: what was collected is written. To be called once, last, or `EndLine` is.
    //
    // A stream that takes too little refuses what comes behind it, as it would have refused the
    // pieces.
    void End();

    // The same, and a line end: a newline and a flush.
    void EndLine();

private:
    // While pieces are collected there is always a byte of it left, for a newline.
    std::size_t Room() const { return static_cast<std::size_t>(end - to); }

    void AddToFull(std::string_view piece);

    void WriteCollected(bool isLine) {
        std::size_t const size = static_cast<std::size_t>(to - buffer);
        if (isSmall) {
            Write(r, buffer, size, isLine);
        } else {
            WriteUndisturbed(r, buffer, size, isLine);
        }
    }

    Renderer& r;
    char* to;   // the next piece's place; never behind `end`
    char* end;  // of the buffer; its beginning, like `to`, when pieces are written by themselves
    char buffer[capacity];
};

}  // namespace Quillo

#endif
