// What the widgets make of a list of labels, for the contenders that spell their tags out.
#ifndef QUILLO_BENCH_PAGE_LABELS_HPP
#define QUILLO_BENCH_PAGE_LABELS_HPP

#include <string>

namespace Bench {

// The style of an item of the navigation bar: short labels are padded to one width.
inline std::string PaddedStyle(std::string const& label) {
    int const length = static_cast<int>(label.size());
    std::string const padding = std::to_string(length <= 15 ? 9 + 6 * ((17 - length) / 2) : 9);
    return "padding-left: " + padding + "px;padding-right: " + padding + "px;";
}

// The image behind a tab; the first tab is the current one.
inline char const* JointBehind(std::size_t tab, std::size_t tabs) {
    return tab == tabs - 1 ? "/images/tab_set/Tab_RToff.gif"
           : tab == 0      ? "/images/tab_set/Tab_LTonRToff.gif"
                           : "/images/tab_set/Tab_LToffRToff.gif";
}

}  // namespace Bench

#endif
