// Widgets for those who do not see a page: what the library writes stays as it is, and a finished
// tree is given the attributes that a screen reader asks for.
#ifndef QUILLO_KIT_ACCESSIBILITY_HPP
#define QUILLO_KIT_ACCESSIBILITY_HPP

#include <quillo>
#include <string>
#include <vector>

namespace QuilloKit {
namespace Accessibility {

inline std::string Attribute(Quillo::ElementImpl const& element, char const* name) {
    auto const found = element.attrs.find(name);
    return found != element.attrs.end() ? found->second : std::string();
}

// Whether the element has the attribute, be it empty. What a page has set itself is left alone.
inline bool Has(Quillo::ElementImpl const& element, char const* name) {
    return element.attrs.count(name) != 0 || element.emptyAttrs.count(name) != 0;
}

inline void SetUnlessThere(Quillo::ElementImpl& element, char const* name,
                           std::string const& value) {
    if (!Has(element, name)) {
        element.attrs[name] = value;
    }
}

// An element to look at, and whether it stands in a navigation bar or a row of tabs.
struct Place {
    Quillo::ElementImpl* element;
    bool isInWidget;
};

// An item or a tab that stands for the page being shown.
inline bool IsCurrent(Quillo::ElementImpl const& element) {
    return (Attribute(element, "class") + " ").compare(0, 9, "selected ") == 0;
}

inline void Describe(Place const& place, std::string const& navigationLabel) {
    Quillo::ElementImpl& element = *place.element;
    if (element.tag == "img") {
        SetUnlessThere(element, "alt", "");
    }
    if (Attribute(element, "id") == "nav_bar") {
        SetUnlessThere(element, "role", "navigation");
        SetUnlessThere(element, "aria-label", Quillo::Filter(navigationLabel));
    }
    if (place.isInWidget && IsCurrent(element)) {
        SetUnlessThere(element, "aria-current", "page");
    }
}

}  // namespace Accessibility

// Makes the widgets below `tree` accessible (WAI-ARIA 1.2): an image without a text is decoration
// and says so (`alt=""`), a navigation bar is a navigation landmark named `navigationLabel`, and
// the item or tab that stands for the page being shown is the current one. Attributes that are
// there stay. Called once the tree is whole, for it sees what stands below `tree` at that moment.
inline void MakeAccessible(Quillo::Element const& tree, std::string const& navigationLabel) {
    std::vector<Accessibility::Place> pending = {{&Quillo::Element::Checked(tree.impl), false}};
    while (!pending.empty()) {
        Accessibility::Place const place = pending.back();
        pending.pop_back();
        Accessibility::Describe(place, navigationLabel);
        std::string const id = Accessibility::Attribute(*place.element, "id");
        bool const isInWidget = place.isInWidget || id == "nav_bar" || id == "tabs";
        for (auto const& child : place.element->children) {
            pending.push_back({&Quillo::Element::Checked(child), isInWidget});
        }
    }
}

}  // namespace QuilloKit

#endif
