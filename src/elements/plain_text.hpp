#ifndef QUILLO_ELEMENTS_PLAIN_TEXT_HPP
#define QUILLO_ELEMENTS_PLAIN_TEXT_HPP

namespace Quillo {

// The first byte of `text` that HTML text cannot hold as it stands, a NUL among them, or `end`.
char const* EndOfPlain(char const* text, char const* end);

// What stands in HTML text for a byte that cannot: an entity; or "_", behind a warning. Stands with
// `Filter`.
char const* Replacement(char byte);

}  // namespace Quillo

#endif
