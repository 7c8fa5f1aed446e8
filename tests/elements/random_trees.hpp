// Trees of all kinds of element, many of which break the rules of forms and focus.
#ifndef QUILLO_TESTS_ELEMENTS_RANDOM_TREES_HPP
#define QUILLO_TESTS_ELEMENTS_RANDOM_TREES_HPP

#include <map>
#include <quillo>
#include <random>
#include <set>
#include <string>
#include <vector>

// A tree that knows nothing of the library.
struct Node {
    enum Kind { Element, Text, Container, Null, LineEnd } kind = Element;
    std::string tag;
    bool isLeaf = false;
    std::map<std::string, std::string> attrs;
    std::set<std::string> emptyAttrs;
    bool isOneLine = false;
    bool hasFocus = false;
    std::string text;
    bool isFiltered = false;
    std::vector<Node> children;
};

// The same tree as elements.
Quillo::Element MakeElement(Node const& node);

// The same seed gives the same trees.
class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : random(seed) {}

    Node Next() { return Make(0); }
    unsigned Below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

private:
    bool Chance(unsigned inHowMany) { return Below(inHowMany) == 0; }
    Node Make(int depth);

    std::mt19937 random;
};

#endif
