#ifndef QUILLO_ELEMENTS_RENDERER_HPP
#define QUILLO_ELEMENTS_RENDERER_HPP

#include <quillo>

namespace Quillo {

// What `r << Endl()` does, without an element made for it: a newline and a flush.
Renderer& EndLine(Renderer& r);

}  // namespace Quillo

#endif
