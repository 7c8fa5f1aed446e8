#ifndef QUILLO_TEXT_HEX_DIGIT_HPP
#define QUILLO_TEXT_HEX_DIGIT_HPP

namespace Quillo {

// The value of the hex digit `c`, in either case: 'b' and 'B' are 11. Any other byte is 0, which
// the decoder of "%u" relies on.
int HexDigitValue(char c);

}  // namespace Quillo

#endif
