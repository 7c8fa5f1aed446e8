#include "widgets/fixed_attr.hpp"

namespace Quillo {

void SetFixedAttr(Element& element, char const* name, char const* value) {
    element.SetAttr(name, value);
}

}  // namespace Quillo
