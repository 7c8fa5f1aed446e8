// The handles: what makes an element, and what changes one through its handle.
#include <cstdio>
#include <cstdlib>
#include <quillo>

#include "elements/joined.hpp"
#include "elements/leaf_check.hpp"
#include "elements/pool.hpp"

namespace Quillo {

Div::Div() : Element(adopt, new DivImpl) {}
Span::Span() : Element(adopt, new SpanImpl) {}
A::A() : Element(adopt, new AImpl) {}
H2::H2() : Element(adopt, new H2Impl) {}
Img::Img() : Element(adopt, new ImgImpl) {}
Br::Br() : Element(adopt, new BrImpl) {}
Endl::Endl() : Element(adopt, new EndlImpl) {}
Null::Null() : Element(adopt, new NullImpl) {}
Text::Text(std::string const& text, bool filter) : Element(adopt, new TextImpl(text, filter)) {}

Text Nbsp() {
    return Text("&nbsp;", false);
}

Element::Element(boost::shared_ptr<ElementImpl> const& element) : impl(element) {}
Element::Element(Adopt, ElementImpl* element) : impl(Pool::Share(element)) {}

Element::~Element() = default;

ElementImpl& Element::Checked(boost::shared_ptr<ElementImpl> const& impl) {
    if (!impl) {
        std::fputs("quillo: an operation needs an element, and its handle refers to nothing\n",
                   stderr);
        std::abort();
    }
    return *impl;
}

// A setter's arguments may be pieces of what it changes, and it changes all or nothing when memory
// runs out.

Element& Element::SetAttr(std::string const& name, std::string const& value) {
    ElementImpl& element = Checked(impl);
    // Found first, for the name may be a piece of the value that is replaced; and removed by its
    // place, for removing by name removes a range, which is more code.
    auto const empty = element.emptyAttrs.find(name);
    Pool::Set(element.attrs, name, value);
    if (empty != element.emptyAttrs.end()) {
        element.emptyAttrs.erase(empty);
    }
    return *this;
}

Element& Element::SetEmptyAttr(std::string const& name) {
    Checked(impl).emptyAttrs.insert(name);
    return *this;
}

Element& Element::AddStyle(std::string const& style) {
    ElementImpl const& element = Checked(impl);
    auto const present = element.attrs.find("style");
    return SetAttr("style",
                   present != element.attrs.end() ? Joined({present->second, ";", style}) : style);
}

Element& Element::SetOneLine() {
    Checked(impl).oneLine = true;
    return *this;
}

Element& Element::SetFocus() {
    Checked(impl).hasFocus = true;
    return *this;
}

bool Element::IsNull() const {
    return dynamic_cast<NullImpl const*>(impl.get()) != nullptr;
}

Img& Img::Src(std::string const& url) {
    SetAttr("src", url);
    SetAttr("class", "middle");
    return *this;
}

Element const& operator<<(Element const& parent, Element const& child) {
    return parent << Element(child);
}

Element const& operator<<(Element const& parent, Element&& child) {
    if (!child.impl) {
        return parent;
    }
    ElementImpl& element = Element::Checked(parent.impl);
    RefuseLeaf(element);
    if (element.children.size() == element.children.capacity()) {
        Pool::Grow(element.children);
    }
    ElementImpl* const added = child.impl.get();
    element.children.push_back(std::move(child.impl));
    added->parent = &element;
    return parent;
}

}  // namespace Quillo
