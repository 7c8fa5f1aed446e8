// Element kinds that pages need besides those of <quillo>.
//
//     QuilloKit::Tag("th").SetAttr("scope", "row") << Quillo::Text("mtu", true)
#ifndef QUILLO_KIT_ELEMENTS_HPP
#define QUILLO_KIT_ELEMENTS_HPP

#include <quillo>
#include <string>

namespace QuilloKit {

// An element of any tag that may have children.
class Tag : public Quillo::Element {
public:
    explicit Tag(std::string const& tag)
        : Element(boost::shared_ptr<Quillo::ElementImpl>(new Quillo::ElementImpl(tag, false))) {}
};

// A void element (HTML Living Standard, 13.1.2), such as "meta": it has no children and no closing
// tag.
class VoidTag : public Quillo::Element {
public:
    explicit VoidTag(std::string const& tag)
        : Element(boost::shared_ptr<Quillo::ElementImpl>(new Quillo::ElementImpl(tag, true))) {}
};

// A group without a tag of its own.
class Group : public Quillo::Element {
public:
    Group() : Element(boost::shared_ptr<Quillo::ElementImpl>(new Quillo::ContainerImpl)) {}
};

// Adds text to `parent`, escaped when it is written, and returns `parent`.
inline Quillo::Element const& operator<<(Quillo::Element const& parent, std::string const& text) {
    return parent << Quillo::Text(text, true);
}

}  // namespace QuilloKit

#endif
