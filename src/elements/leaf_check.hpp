#ifndef QUILLO_ELEMENTS_LEAF_CHECK_HPP
#define QUILLO_ELEMENTS_LEAF_CHECK_HPP

#include <quillo>

namespace Quillo {

// Whether `parent` takes children. A leaf is refused by the platform's error; a platform whose
// `ThrowError` returns is no leave to go on.
inline bool TakesChildren(ElementImpl const& parent) {
    if (parent.isLeaf) {
        Glb::ThrowError("Tried to add child to <" + parent.tag + "> item", __LINE__, __FILE__);
    }
    return !parent.isLeaf;
}

}  // namespace Quillo

#endif
