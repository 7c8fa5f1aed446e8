#include "elements/random_trees.hpp"

using namespace Quillo;

namespace {

boost::shared_ptr<ElementImpl> MakeImpl(Node const& node) {
    switch (node.kind) {
        case Node::Text:
            return boost::shared_ptr<ElementImpl>(new TextImpl(node.text, node.isFiltered));
        case Node::Container:
            return boost::shared_ptr<ElementImpl>(new ContainerImpl);
        case Node::Null:
            return boost::shared_ptr<ElementImpl>(new NullImpl);
        case Node::LineEnd:
            return boost::shared_ptr<ElementImpl>(new EndlImpl);
        default:
            return boost::shared_ptr<ElementImpl>(new ElementImpl(node.tag, node.isLeaf));
    }
}

}  // namespace

Element MakeElement(Node const& node) {
    Element const element(MakeImpl(node));
    element.impl->attrs = node.attrs;
    element.impl->emptyAttrs = node.emptyAttrs;
    element.impl->oneLine = node.isOneLine;
    element.impl->hasFocus = node.hasFocus;
    for (Node const& child : node.children) {
        element << MakeElement(child);
    }
    return element;
}

Node RandomTrees::Make(int depth) {
    Node node;
    unsigned const kind = Below(10);
    node.kind = kind < 6    ? Node::Element
                : kind < 8  ? Node::Text
                : Chance(3) ? Node::Container
                : Chance(2) ? Node::Null
                            : Node::LineEnd;
    if (node.kind == Node::Element) {
        static char const* const tags[] = {"div", "form", "form", "script", "p", "td", "br"};
        node.tag = tags[Below(7)];
        node.isLeaf = node.tag == "br";
        node.isOneLine = Chance(6);
        node.hasFocus = Chance(5);
        static char const* const names[] = {"name", "class", "name", "id"};
        while (Chance(2)) {
            node.attrs[names[Below(4)]] = std::string(Below(3), 'v');
        }
        while (Chance(4)) {
            node.emptyAttrs.insert(names[Below(4)]);
        }
    }
    if (node.kind == Node::Text) {
        for (unsigned left = Below(5); left > 0; --left) {
            node.text += "a<>&\"'\n\t\xC3"[Below(9)];
        }
        node.isFiltered = !Chance(4);
    }
    bool const takesChildren =
        !node.isLeaf && node.kind != Node::Text && node.kind != Node::LineEnd && depth < 6;
    for (unsigned left = takesChildren ? Below(4) : 0; left > 0; --left) {
        node.children.push_back(Make(depth + 1));
    }
    return node;
}
