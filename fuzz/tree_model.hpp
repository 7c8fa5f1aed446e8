// A tree that knows nothing of the library, and the page it is.
#ifndef QUILLO_FUZZ_TREE_MODEL_HPP
#define QUILLO_FUZZ_TREE_MODEL_HPP

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

// Shared by its handles and its parents, as an element is.
struct ModelNode {
    enum Kind { Plain, Text, Container, Null, LineEnd };

    ModelNode(Kind nodeKind, std::string const& nodeTag, bool leaf)
        : kind(nodeKind), tag(nodeTag), isLeaf(leaf) {}
    ModelNode(ModelNode const&) = delete;
    ModelNode& operator=(ModelNode const&) = delete;
    ~ModelNode() {
        for (auto const& child : children) {
            child->parent = nullptr;
        }
    }

    // How many elements are written when this one is.
    std::size_t Size() const;
    bool Holds(ModelNode const* other) const;

    Kind kind;
    std::string tag;
    bool isLeaf;
    std::map<std::string, std::string> attrs = {};
    std::set<std::string> emptyAttrs = {};
    bool isOneLine = false;
    bool hasFocus = false;
    std::string text = {};
    bool isFiltered = false;
    ModelNode* parent = nullptr;
    std::vector<std::shared_ptr<ModelNode>> children = {};
};

struct ModelPage {
    std::string html;
    std::vector<std::string> reports;  // "warn: MESSAGE" and "error: MESSAGE", in order
};

ModelPage WriteModel(ModelNode const& root, int level, bool indents);

// `text` as `Filter` writes it, and a report for each control byte.
std::string EscapedModel(std::string const& text, std::vector<std::string>& reports);

#endif
