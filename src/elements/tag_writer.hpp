#ifndef QUILLO_ELEMENTS_TAG_WRITER_HPP
#define QUILLO_ELEMENTS_TAG_WRITER_HPP

#include <cstring>
#include <quillo>
#include <string_view>

namespace Quillo {

// The pieces of one tag on their way to the stream, and the line end behind it.
//
// They are collected, and reach the stream in one write, where nobody can tell that from a write
// for each piece. A stream that is tied or unit-buffered is flushed with every write, one that
// throws breaks off at a certain piece, and one that has failed refuses each of them: those get
// every piece by itself.
//
// Has a buffer in it: not for a stack frame below which a tree is written.
class TagWriter {
public:
    explicit TagWriter(Renderer& renderer);
    TagWriter(TagWriter const&) = delete;
    TagWriter& operator=(TagWriter const&) = delete;

    TagWriter& operator<<(std::string_view piece) {
        if (piece.size() < room - size) {
            std::memcpy(buffer + size, piece.data(), piece.size());
            size += piece.size();
        } else {
            AddToFull(piece);
        }
        return *this;
    }
    TagWriter& operator<<(char byte) { return *this << std::string_view(&byte, 1); }

    // Ends the tag: what was collected is written. To be called once, last, or `EndLine` is.
    void End();

    // The same, and a line end: a newline and a flush.
    void EndLine();

private:
    void AddToFull(std::string_view piece);

    Renderer& r;
    std::size_t room;  // of the buffer; 0: pieces are written by themselves
    std::size_t size;
    char buffer[512];
};

}  // namespace Quillo

#endif
