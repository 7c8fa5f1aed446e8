#include "elements/plain_text.hpp"

namespace Quillo {
namespace {

// Letters and digits of any locale, the bytes of multi-byte UTF-8 sequences, and all signs but those
// of markup.
constexpr bool IsPlain(unsigned byte) {
    if (byte < 0x20) {
        return byte == '\t' || byte == '\n';
    }
    return byte != '<' && byte != '>' && byte != '&' && byte != '"' && byte != 0x7F;
}

// `IsPlain` of every byte: most of a page is text, and a look-up is a third of the work.
struct PlainBytes {
    constexpr PlainBytes() : isPlain() {
        for (unsigned byte = 0; byte < 0x100; ++byte) {
            isPlain[byte] = IsPlain(byte);
        }
    }

    bool isPlain[0x100];
};

constexpr PlainBytes bytes;

}  // namespace

char const* EndOfPlain(char const* text) {
    while (bytes.isPlain[static_cast<unsigned char>(*text)]) {
        ++text;
    }
    return text;
}

}  // namespace Quillo
