// The handles: what makes an element, and what changes one through its handle.
#include <cstdio>
#include <cstdlib>
#include <quillo>
#include <utility>

#include "elements/leaf_check.hpp"

namespace Quillo {
namespace {

template <class Impl, class... Arguments>
boost::shared_ptr<ElementImpl> New(Arguments const&... arguments) {
    return boost::shared_ptr<ElementImpl>(new Impl(arguments...));
}

}  // namespace

Div::Div() : Element(New<DivImpl>()) {}
Span::Span() : Element(New<SpanImpl>()) {}
A::A() : Element(New<AImpl>()) {}
H2::H2() : Element(New<H2Impl>()) {}
Img::Img() : Element(New<ImgImpl>()) {}
Br::Br() : Element(New<BrImpl>()) {}
Endl::Endl() : Element(New<EndlImpl>()) {}
Null::Null() : Element(New<NullImpl>()) {}
Text::Text(std::string const& text, bool filter) : Element(New<TextImpl>(text, filter)) {}

Text Nbsp() {
    return Text("&nbsp;", false);
}

Element::Element(boost::shared_ptr<ElementImpl> const& element) : impl(element) {}

Element::~Element() = default;

ElementImpl& Element::Checked(boost::shared_ptr<ElementImpl> const& impl) {
    if (!impl) {
        std::fputs("quillo: an operation needs an element, and its handle refers to nothing\n",
                   stderr);
        std::abort();
    }
    return *impl;
}

// A setter makes its copies first, for its arguments may be pieces of what it changes, and so that
// it changes all or nothing when memory runs out.

Element& Element::SetAttr(std::string const& name, std::string const& value) {
    ElementImpl& element = Checked(impl);
    std::string copy(value);
    std::string& attribute = element.attrs[name];
    element.emptyAttrs.erase(name);
    attribute.swap(copy);
    return *this;
}

Element& Element::SetEmptyAttr(std::string const& name) {
    Checked(impl).emptyAttrs.insert(name);
    return *this;
}

Element& Element::AddStyle(std::string const& style) {
    ElementImpl& element = Checked(impl);
    auto const present = element.attrs.find("style");
    if (present != element.attrs.end()) {
        present->second.append(";" + style);
    } else {
        element.attrs.emplace("style", style);
    }
    element.emptyAttrs.erase("style");
    return *this;
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
    if (!child.impl) {
        return parent;
    }
    ElementImpl& element = Element::Checked(parent.impl);
    RefuseLeaf(element);
    element.children.push_back(child.impl);
    child.impl->parent = &element;
    return parent;
}

}  // namespace Quillo
