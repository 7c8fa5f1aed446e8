// The tab set: tabs on one line, joined by images, above the content area.
//
//     cap LToff [tab 0] LToffRTon [tab 1] LTonRToff [tab 2] RToff
//     ----------------------------- content -----------------------------
//
// Tab 1 is current. LT and RT are the tabs to the left and to the right of an image; "on" means
// that this tab is the current one.
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"
#include "widgets/fixed_attr.hpp"

namespace Quillo {
namespace {

// Each by the state of its tab, off and on; a joint by its left tab, then by its right one.
char const* const leftEnds[2] = {"/images/tab_set/Tab_LToff.gif", "/images/tab_set/Tab_LTon.gif"};
char const* const rightEnds[2] = {"/images/tab_set/Tab_RToff.gif", "/images/tab_set/Tab_RTon.gif"};
char const* const joints[2][2] = {
    {"/images/tab_set/Tab_LToffRToff.gif", "/images/tab_set/Tab_LToffRTon.gif"},
    {"/images/tab_set/Tab_LTonRToff.gif", "/images/tab_set/Tab_LTonRTon.gif"}};

// In Arabic on and off are exchanged in every image, between two tabs that are both off as well: it
// is an exchange of states and no mirror of the row.
int StateOf(bool isCurrent) {
    bool const isExchanged = g_language != nullptr && std::strcmp(g_language, "ar") == 0;
    return isCurrent != isExchanged ? 1 : 0;
}

// The index of the tab that is current, and a report of what is wrong with the list. The first of
// several selected slots is current, and nothing behind the second one is looked at.
std::size_t ChooseCurrent(std::vector<Slot> const& slots) {
    std::size_t const none = slots.size();
    std::size_t current = none;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (slots[i].selected && current != none) {
            ReportDiagnostic(logSpecError, "More than one slot selected!");
            return current;
        }
        if (slots[i].selected) {
            current = i;
        }
        if (slots[i].text.empty()) {
            ReportDiagnostic(logSpecError, "Slot %d has no text!", static_cast<int>(i));
        }
    }
    if (current == none) {
        ReportDiagnostic(logSpecError, "No slot selected!");
        return 0;
    }
    return current;
}

Element MakeImage(char const* url) {
    return Img().Src(url);
}

// Its own class replaces the one that `Src` sets.
Element MakeCap() {
    Img cap;
    cap.Src("/images/tab_set/Tab_TopBG_R.gif");
    SetFixedAttr(cap, "width", "4");
    SetFixedAttr(cap, "height", "24");
    SetFixedAttr(cap, "class", "endCap");
    return cap;
}

Element MakeTab(Slot const& slot, bool isCurrent) {
    Span tab;
    SetFixedAttr(tab, "class", isCurrent ? "selected" : "selectable");
    tab.AddStyle("top: 1px; padding-bottom: 4px");
    if (isCurrent) {
        tab << Text(slot.text, true);
    } else {
        A link;
        link.SetAttr("href", slot.link);
        link << Text(slot.text, true);
        tab << link;
    }
    return tab;
}

// The image behind tab `i`: the joint to the next one, or the right end.
Element MakeImageBehind(std::size_t i, std::size_t count, std::size_t current) {
    int const left = StateOf(i == current);
    return MakeImage(i == count - 1 ? rightEnds[left] : joints[left][StateOf(i + 1 == current)]);
}

Element MakeRow(std::vector<Slot> const& slots, std::size_t current) {
    Div row;
    SetFixedAttr(row, "id", "tabs");
    row.SetOneLine();
    row << MakeCap();
    row << MakeImage(leftEnds[StateOf(current == 0)]);
    for (std::size_t i = 0; i < slots.size(); ++i) {
        row << MakeTab(slots[i], i == current);
        row << MakeImageBehind(i, slots.size(), current);
    }
    return row;
}

Element MakeContentArea(Element const& content) {
    Div area;
    SetFixedAttr(area, "class", "content");
    area.AddStyle("padding: 10px");
    area << content;
    return area;
}

}  // namespace

// By value, as the header has it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
Element MakeTabs(std::vector<Slot> const& slots, Element content) {
    if (slots.empty()) {
        ReportDiagnostic(logSpecError, "Empty slots[]!");
        return Null();
    }
    std::size_t const current = ChooseCurrent(slots);
    Div tabSet;
    SetFixedAttr(tabSet, "id", "tab_set");
    tabSet << MakeRow(slots, current);
    tabSet << MakeContentArea(content);
    return tabSet;
}

}  // namespace Quillo
