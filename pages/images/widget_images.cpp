// The navigation bar is a bar with round ends. A tab has two round corners and stands on the
// content area; the current one is higher, and stands before its neighbours:
//
//                               _________
//                         .---------.
//      .--------.      .--+         +--.
//      `--------'      |__|_________|__|
//
// What lies outside a corner is transparent, so the images fit any background. The colours of on
// and off are those of the items beside the images: --on and --off of the style sheet.
#include "widget_images.hpp"

#include "gif.hpp"

namespace Pages {
namespace {

constexpr Paint off = 1;
constexpr Paint on = 2;
std::vector<Colour> const colours = {{0x34, 0x46, 0x5A}, {0x0F, 0x6F, 0xCF}};

constexpr int barHeight = 20;
constexpr int tabHeight = 24;
constexpr int offTop = 3;  // how much lower a tab is that is not the current one
constexpr int tabEnd = 6;
constexpr int joint = 13;
constexpr int overlap = 3;  // how far the current tab reaches over the middle of a joint
constexpr int tabRadius = 5;

// Whether a pixel lies outside the round corner whose square begins at the pixel 0, 0 and has
// `radius` pixels a side. Distances are taken between the pixels' middles, in half pixels.
bool IsOutsideCorner(int x, int y, int radius) {
    int const dx = 2 * (radius - x) - 1;
    int const dy = 2 * (radius - y) - 1;
    return x < radius && y < radius && dx * dx + dy * dy > 4 * radius * radius;
}

Picture Mirrored(Picture const& picture) {
    Picture mirrored(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            mirrored.At(x, y) = picture.At(picture.width - 1 - x, y);
        }
    }
    return mirrored;
}

// The left end of the navigation bar, round over its whole width.
Picture BarEnd(int width, Paint paint) {
    Picture end(width, barHeight);
    for (int y = 0; y < barHeight; ++y) {
        int const fromEdge = y < barHeight / 2 ? y : barHeight - 1 - y;
        for (int x = 0; x < width; ++x) {
            end.At(x, y) = IsOutsideCorner(x, fromEdge, width) ? transparent : paint;
        }
    }
    return end;
}

// Paints the tab whose left edge is at `left`, over what is there.
void PaintTab(Picture& picture, int left, Paint paint) {
    int const top = paint == on ? 0 : offTop;
    for (int y = top; y < picture.height; ++y) {
        for (int x = left; x < picture.width; ++x) {
            if (!IsOutsideCorner(x - left, y - top, tabRadius)) {
                picture.At(x, y) = paint;
            }
        }
    }
}

Picture TabEnd(Paint paint) {
    Picture end(tabEnd, tabHeight);
    PaintTab(end, 0, paint);
    return end;
}

// Two tabs alike leave the middle column free between them.
Picture JointOfLike(Paint paint) {
    Picture right(joint, tabHeight);
    PaintTab(right, joint / 2 + 1, paint);
    Picture both = Mirrored(right);
    PaintTab(both, joint / 2 + 1, paint);
    return both;
}

// The current tab, on the right, stands before the other one, which is cut straight behind it.
Picture JointToCurrent() {
    int const left = joint / 2 - overlap;
    Picture picture(joint, tabHeight);
    for (int y = offTop; y < tabHeight; ++y) {
        for (int x = 0; x < left + tabRadius; ++x) {
            picture.At(x, y) = off;
        }
    }
    PaintTab(picture, left, on);
    return picture;
}

}  // namespace

std::vector<WidgetImage> WidgetImages() {
    auto const bar = [](char const* name, Picture const& picture) {
        return WidgetImage{std::string("/images/widgets/nav_bar/") + name, Gif(picture, colours)};
    };
    auto const tab = [](char const* name, Picture const& picture) {
        return WidgetImage{std::string("/images/tab_set/") + name, Gif(picture, colours)};
    };
    return {bar("left_on.gif", BarEnd(10, on)),
            bar("left_off.gif", BarEnd(10, off)),
            bar("right_on.gif", Mirrored(BarEnd(8, on))),
            bar("right_off.gif", Mirrored(BarEnd(8, off))),
            tab("Tab_TopBG_R.gif", Picture(4, tabHeight)),  // the room ahead of the first tab
            tab("Tab_LTon.gif", TabEnd(on)),
            tab("Tab_LToff.gif", TabEnd(off)),
            tab("Tab_RTon.gif", Mirrored(TabEnd(on))),
            tab("Tab_RToff.gif", Mirrored(TabEnd(off))),
            tab("Tab_LToffRToff.gif", JointOfLike(off)),
            tab("Tab_LTonRTon.gif", JointOfLike(on)),
            tab("Tab_LToffRTon.gif", JointToCurrent()),
            tab("Tab_LTonRToff.gif", Mirrored(JointToCurrent()))};
}

}  // namespace Pages
