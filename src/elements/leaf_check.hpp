#ifndef QUILLO_ELEMENTS_LEAF_CHECK_HPP
#define QUILLO_ELEMENTS_LEAF_CHECK_HPP

#include <quillo>

#include "elements/joined.hpp"

namespace Quillo {

// Refuses `parent` as a parent when it is a leaf, by the platform's error. A platform whose
// `ThrowError` returns is no leave to go on.
inline void RefuseLeaf(ElementImpl const& parent) {
    if (parent.isLeaf) {
        Glb::ThrowError(Joined({"Tried to add child to <", parent.tag, "> item"}), __LINE__,
                        __FILE__);
        throw Glb::Error(0, nullptr, "");
    }
}

}  // namespace Quillo

#endif
