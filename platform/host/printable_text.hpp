// Text made safe to stand in one line of a log.
//
//     a<newline>b\<escape>[1m    a\nb\\\x1b[1m
//
// The bytes 0x00-0x1F and 0x7F and the backslash become escapes, so that every output has one input
// only and none holds a line end. Bytes from 0x80 up pass: they are pieces of UTF-8.
#ifndef QUILLO_HOST_PRINTABLE_TEXT_HPP
#define QUILLO_HOST_PRINTABLE_TEXT_HPP

#include <cstddef>
#include <string_view>

namespace QuilloHost {

// What stands for one byte: up to four bytes.
struct PrintableByte {
    char text[4];
    std::size_t length;
};

PrintableByte MakePrintable(char byte) noexcept;

// Appends `bytes` to `out` (a string, or anything with its `append(char const*, size_t)`) with
// every byte made printable.
template <class Out>
void AppendPrintable(Out& out, std::string_view bytes) {
    for (char byte : bytes) {
        PrintableByte const printable = MakePrintable(byte);
        out.append(printable.text, printable.length);
    }
}

}  // namespace QuilloHost

#endif
