#ifndef QUILLO_ELEMENTS_TAG_WRITER_HPP
#define QUILLO_ELEMENTS_TAG_WRITER_HPP

#include <cstring>
#include <quillo>
#include <string_view>

#include "elements/renderer.hpp"

namespace Quillo {

// The pieces of one tag on their way to the stream, and the line end behind it.
//
// They are collected, and reach the stream in one write, where nobody can tell that from a write
// for each piece. Any other stream gets every piece by itself.
//
// Has a buffer in it: not for a stack frame below which a tree is written.
class TagWriter {
public:
    static constexpr std::size_t capacity = 512;

    explicit TagWriter(Renderer& renderer);
    TagWriter(TagWriter const&) = delete;
    TagWriter& operator=(TagWriter const&) = delete;

    TagWriter& operator<<(std::string_view piece) {
        if (piece.size() < room - size) {
            Add(piece);
        } else {
            AddToFull(piece);
        }
        return *this;
    }
    TagWriter& operator<<(char byte) { return *this << std::string_view(&byte, 1); }

    // ` name="value"`
    void Attribute(std::string_view name, std::string_view value) {
        if (isSmall || name.size() + value.size() + 4 >= room - size) {
            *this << ' ' << name << "=\"" << value << '"';
        } else {
            Add(" ");
            Add(name);
            Add("=\"");
            Add(value);
            Add("\"");
        }
    }

    // Ends the tag: what was collected is written. To be called once, last, or `EndLine` is.
    void End();

    // The same, and a line end: a newline and a flush.
    void EndLine();

private:
    // A piece for which there is room.
    void Add(std::string_view piece) {
        std::memcpy(buffer + size, piece.data(), piece.size());
        size += piece.size();
    }

    void AddToFull(std::string_view piece);

    Renderer& r;
    std::size_t room;  // of the buffer; 0: pieces are written by themselves
    std::size_t size;
    char buffer[capacity];
};

}  // namespace Quillo

#endif
