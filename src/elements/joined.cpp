#include "elements/joined.hpp"

#include <cstring>
#include <quillo>

namespace Quillo {

Piece::Piece(char const* nulTerminated)
    : text(Cstr(nulTerminated)), size(std::strlen(text)), digits() {}

Piece::Piece(std::string const& string) : text(string.data()), size(string.size()), digits() {}

Piece::Piece(bool isNegative, unsigned long number) : text(nullptr), size(0), digits() {
    unsigned long rest = isNegative ? 0 - number : number;
    char* const end = digits + sizeof digits;
    do {
        *(end - ++size) = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (isNegative) {
        *(end - ++size) = '-';
    }
}

void Append(std::string& text, Pieces pieces) {
    for (Piece const& piece : pieces) {
        text.append(piece.begin(), piece.length());
    }
}

std::string Joined(Pieces pieces) {
    std::string text;
    Append(text, pieces);
    return text;
}

}  // namespace Quillo
