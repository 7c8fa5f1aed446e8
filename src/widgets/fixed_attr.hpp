#ifndef QUILLO_WIDGETS_FIXED_ATTR_HPP
#define QUILLO_WIDGETS_FIXED_ATTR_HPP

#include <quillo>

namespace Quillo {

// `SetAttr` for a widget's fixed texts. Each call is small: the strings are made in one place.
void SetFixedAttr(Element& element, char const* name, char const* value);

}  // namespace Quillo

#endif
