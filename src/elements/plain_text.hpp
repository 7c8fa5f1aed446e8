#ifndef QUILLO_ELEMENTS_PLAIN_TEXT_HPP
#define QUILLO_ELEMENTS_PLAIN_TEXT_HPP

namespace Quillo {

// The first byte of `text` that HTML text cannot hold as it stands, or the NUL.
char const* EndOfPlain(char const* text);

}  // namespace Quillo

#endif
