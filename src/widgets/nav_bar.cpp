// The navigation bar, on one line:
//
//     [left_on] selected  selectable  unselectable [right_off]
//
// Each end image is on when the item beside it is the one that stands for the page.
#include <quillo>

#include "elements/diagnostics.hpp"
#include "widgets/fixed_attr.hpp"

namespace Quillo {
namespace {

char const leftOn[] = "/images/widgets/nav_bar/left_on.gif";
char const leftOff[] = "/images/widgets/nav_bar/left_off.gif";
char const rightOn[] = "/images/widgets/nav_bar/right_on.gif";
char const rightOff[] = "/images/widgets/nav_bar/right_off.gif";

// The left image is wider than the right one: that is how the images are drawn.
char const leftWidth[] = "10";
char const rightWidth[] = "8";

bool IsOn(Slot const& slot) {
    return slot.selected && !slot.unselectable;
}
bool IsLink(Slot const& slot) {
    return !slot.selected && !slot.unselectable;
}

char const* StateOf(Slot const& slot) {
    if (slot.unselectable) {
        return "unselectable";
    }
    return slot.selected ? "selected" : "selectable";
}

// The item of a bar of one is first, and not last.
std::string ClassOf(Slot const& slot, std::size_t index, std::size_t count) {
    char const* const place = index == 0 ? " first" : index == count - 1 ? " last" : "";
    return Joined({StateOf(slot), place});
}

// Pixels at each side of a label. At about six pixels a byte, labels of up to 15 bytes come out
// nearly equally wide; a longer one gets the least padding.
int PaddingOf(std::string const& label) {
    int const least = 9;
    int const length = Glb::isize(label);
    return length <= 15 ? least + 6 * ((17 - length) / 2) : least;
}

std::string StyleOf(Slot const& slot) {
    int const padding = PaddingOf(slot.text);
    return Joined({"padding-left: ", padding, "px;padding-right: ", padding, "px;"});
}

Element MakeEnd(char const* width, char const* url) {
    Img image;
    SetFixedAttr(image, "height", "20");
    SetFixedAttr(image, "width", width);
    SetFixedAttr(image, "alt", "");
    image.Src(url);
    return image;
}

// The style belongs to what the pointer hits: the link, or the item that is none.
Element MakeItem(Slot const& slot, std::string const& className) {
    Span item;
    item.SetAttr("class", className);
    if (IsLink(slot)) {
        A link;
        link.SetAttr("href", slot.link);
        link.AddStyle(StyleOf(slot));
        link << Text(slot.text, true);
        item << link;
    } else {
        item.AddStyle(StyleOf(slot));
        item << Text(slot.text, true);
    }
    return item;
}

}  // namespace

Element MakeNavBar(std::vector<Slot> const& slots) {
    Div bar;
    SetFixedAttr(bar, "id", "nav_bar");
    bar.SetOneLine();
    Span row;
    bar << row;
    row << MakeEnd(leftWidth, !slots.empty() && IsOn(slots.front()) ? leftOn : leftOff);
    for (std::size_t i = 0; i < slots.size(); ++i) {
        row << MakeItem(slots[i], ClassOf(slots[i], i, slots.size()));
    }
    row << MakeEnd(rightWidth, !slots.empty() && IsOn(slots.back()) ? rightOn : rightOff);
    return bar;
}

}  // namespace Quillo
