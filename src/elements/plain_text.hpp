#ifndef QUILLO_ELEMENTS_PLAIN_TEXT_HPP
#define QUILLO_ELEMENTS_PLAIN_TEXT_HPP

namespace Quillo {

// The first byte of `text` that HTML text cannot hold as it stands, a NUL among them, or `end`.
char const* EndOfPlain(char const* text, char const* end);

}  // namespace Quillo

#endif
