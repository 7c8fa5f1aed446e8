// The texts of a vocabulary, one behind the other, each with its NUL; an empty one ends the list.
// A list is a single constant, which the loader has nothing to do for.
//
//     "top\0middle\0bottom\0"    0 is "top", 1 "middle", 2 "bottom"
#ifndef QUILLO_ENUMS_TEXT_LIST_HPP
#define QUILLO_ENUMS_TEXT_LIST_HPP

namespace Quillo {

// The text of `number`; null when the list has none.
char const* TextAt(int number, char const* texts);

// The number of `text`; -1 when the list does not have it, or `text` is null.
int NumberOf(char const* text, char const* texts);

}  // namespace Quillo

#endif
