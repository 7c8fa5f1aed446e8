// The elements: what they hold, and how a tree is taken down.
//
// A tree dies depth first, a parent before its children, children in order, as recursion would do
// it. The recursion is a loop here, over a stack of its own in memory: an element that the loop has
// just let go of hands its children to the loop instead of letting go of them itself, so a tree of
// any depth dies on bounded stack.
#include <algorithm>
#include <new>
#include <quillo>
#include <utility>

#include "elements/pool.hpp"

namespace Quillo {
namespace {

using Pool::Children;

// A loop that takes down the children of one element and all below them.
struct Teardown {
    ElementImpl const* released;  // the element that the loop is letting go of
    Children pending;             // what it has still to let go of, the next one last
};

// The innermost loop of this thread. An element's own destructor may take down another tree, one
// that the element held as a field: that runs a loop of its own. One word, at a place that is fixed
// when the library is loaded: to find it takes no call, and no symbol of the loader.
__attribute__((tls_model("initial-exec"))) thread_local Teardown* innermost = nullptr;

// Gives `children` to the loop, the last one first. Takes memory: false when there is none, and the
// first of the children are left.
bool HandOver(Teardown& loop, Children& children) {
    try {
        while (!children.empty()) {
            loop.pending.push_back(std::move(children.back()));
            children.pop_back();
        }
        return true;
    } catch (std::bad_alloc const&) {
        return false;
    }
}

void TakeDown(Children& children) {
    Teardown loop = {nullptr, {}};
    loop.pending.swap(children);
    std::reverse(loop.pending.begin(), loop.pending.end());
    Teardown* const outer = innermost;
    innermost = &loop;
    while (!loop.pending.empty()) {
        boost::shared_ptr<ElementImpl> child;
        child.swap(loop.pending.back());
        loop.pending.pop_back();
        loop.released = child.get();
        child.reset();
    }
    innermost = outer;
}

}  // namespace

ElementImpl::ElementImpl(std::string const& tagName, bool leaf)
    : tag(tagName), isLeaf(leaf), parent(nullptr), oneLine(false), hasFocus(false) {}

ElementImpl::ElementImpl(char const* tagName, bool leaf)
    : tag(tagName), isLeaf(leaf), parent(nullptr), oneLine(false), hasFocus(false) {}

ElementImpl::~ElementImpl() {
    for (boost::shared_ptr<ElementImpl> const& child : children) {
        if (child) {
            child->parent = nullptr;
        }
    }
    bool const isReleasedByLoop = innermost != nullptr && innermost->released == this;
    if (!isReleasedByLoop || !HandOver(*innermost, children)) {
        TakeDown(children);
    }
    Pool::Give(children);
    Pool::Give(attrs);
}

void* ElementImpl::operator new(std::size_t size) {
    return Pool::Take(size);
}

void ElementImpl::operator delete(void* element, std::size_t size) noexcept {
    Pool::Give(element, size);
}

ContainerImpl::ContainerImpl() : ElementImpl("", false) {}
TextImpl::TextImpl(std::string const& content, bool isFiltered)
    : ElementImpl("", true), text(content), filter(isFiltered) {}
NullImpl::NullImpl() : ElementImpl("", false) {}
EndlImpl::EndlImpl() : ElementImpl("", true) {}
DivImpl::DivImpl() : ElementImpl("div", false) {}
SpanImpl::SpanImpl() : ElementImpl("span", false) {}
AImpl::AImpl() : ElementImpl("a", false) {}
ImgImpl::ImgImpl() : ElementImpl("img", true) {}
BrImpl::BrImpl() : ElementImpl("br", true) {}
H2Impl::H2Impl() : ElementImpl("h2", false) {}

}  // namespace Quillo
