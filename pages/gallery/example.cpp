#include "example.hpp"

#include <stdexcept>

using namespace Quillo;

namespace Pages {

std::string SourceOf(std::string const& function, std::string const& sources) {
    std::string const end = "\n}\n";
    std::size_t const before = sources.find("\nElement " + function + "() {\n");
    std::size_t const last = sources.find(end, before);
    if (before == std::string::npos || last == std::string::npos) {
        throw std::logic_error("the gallery's sources have no 'Element " + function +
                               "()': add its file to GALLERY_SOURCES in pages/CMakeLists.txt");
    }
    return sources.substr(before + 1, last + end.size() - 1 - (before + 1));
}

void NumberIds(Element const& tree, int& last) {
    auto& attributes = tree.impl->attrs;
    auto const id = attributes.find("id");
    if (id != attributes.end()) {
        id->second += "-" + std::to_string(++last);
    }
    for (auto const& child : tree.impl->children) {
        NumberIds(Element(child), last);
    }
}

}  // namespace Pages
