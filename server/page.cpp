#include "page.hpp"

#include <algorithm>

namespace QuilloServer {
namespace {

// A function's static: pages in other files are made before any variable of this one.
std::vector<Page const*>& Registry() {
    static std::vector<Page const*> pages;
    return pages;
}

}  // namespace

Page::Page(std::string const& pageName, std::string const& pageTitle, int pageOrder,
           WritePage writePage)
    : name(pageName), title(pageTitle), order(pageOrder), write(writePage) {
    Registry().push_back(this);
}

Page::~Page() {
    std::vector<Page const*>& pages = Registry();
    pages.erase(std::remove(pages.begin(), pages.end(), this), pages.end());
}

std::vector<Page const*> Pages() {
    std::vector<Page const*> pages = Registry();
    std::sort(pages.begin(), pages.end(),
              [](Page const* left, Page const* right) { return left->order < right->order; });
    return pages;
}

Page const* FindPage(std::string const& name) {
    for (Page const* page : Registry()) {
        if (page->name == name) {
            return page;
        }
    }
    return nullptr;
}

}  // namespace QuilloServer
