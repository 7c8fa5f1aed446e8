#ifndef QUILLO_ELEMENTS_SMALL_HPP
#define QUILLO_ELEMENTS_SMALL_HPP

namespace Quillo {

// Whether the library is to be small rather than fast: the CMake option QUILLO_SMALL. What it does
// is the same; the shorter way is left out where it comes beside a plain one.
constexpr bool isSmall = QUILLO_SMALL;

}  // namespace Quillo

#endif
