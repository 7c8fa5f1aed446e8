// Texts and whole numbers, joined into one text.
//
//     Joined({"padding-left: ", 12, "px"})    "padding-left: 12px"
#ifndef QUILLO_ELEMENTS_JOINED_HPP
#define QUILLO_ELEMENTS_JOINED_HPP

#include <cstddef>
#include <initializer_list>
#include <string>
#include <type_traits>

namespace Quillo {

// A piece of a text. Borrows the text it is made from, of which null is the empty one. Numbers are
// digits and a minus sign, whatever a locale would make of them.
class Piece {
public:
    Piece(char const* nulTerminated);
    Piece(std::string const& string);
    template <class Integer, class = std::enable_if_t<std::is_integral<Integer>::value>>
    Piece(Integer number)
        : Piece(std::is_signed<Integer>::value && number < Integer(0),
                static_cast<unsigned long>(number)) {
        static_assert(sizeof number <= sizeof(unsigned long), "a number is a word at most");
    }

    char const* begin() const { return text != nullptr ? text : digits + sizeof digits - size; }
    std::size_t length() const { return size; }

private:
    Piece(bool isNegative, unsigned long number);

    char const* text;  // null: the number at the end of `digits`
    std::size_t size;
    char digits[24];
};

typedef std::initializer_list<Piece> Pieces;

void Append(std::string& text, Pieces pieces);
std::string Joined(Pieces pieces);

}  // namespace Quillo

#endif
