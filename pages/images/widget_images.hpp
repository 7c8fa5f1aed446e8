// The images that the navigation bar and the tab set name.
#ifndef QUILLO_PAGES_IMAGES_WIDGET_IMAGES_HPP
#define QUILLO_PAGES_IMAGES_WIDGET_IMAGES_HPP

#include <string>
#include <vector>

namespace Pages {

struct WidgetImage {
    std::string path;  // as the widgets write it
    std::string gif;   // the file's bytes
};

// All of them, drawn anew. Each looks as its name says: the exchange of on and off that the tab set
// makes in Arabic is the style sheet's to undo where it does not fit a row from right to left.
std::vector<WidgetImage> WidgetImages();

}  // namespace Pages

#endif
