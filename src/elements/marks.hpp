#ifndef QUILLO_ELEMENTS_MARKS_HPP
#define QUILLO_ELEMENTS_MARKS_HPP

#include <algorithm>

#include "elements/small.hpp"
#include "elements/window.hpp"

namespace Quillo {

// The bytes of one kind in a text, which are found one after the other:
//
//     Marks<NotPlain> marks(text, end);
//     char const* const first = marks.From(text);
//     char const* const second = marks.From(first + 1);
//
// A kind tells of a byte whether it `Is` a mark, and which bytes of a window are (`InWindow`).
template <class Kind>
class Marks {
public:
    Marks(char const* text, char const* textEnd) : begin(text), next(text), end(textEnd) {}

    // The first one from `p` up, or the end. `p` never goes back.
    char const* From(char const* p) {
#ifdef __SSE2__
        if (!isSmall && end - begin >= Window::size) {
            return InWindows(p);
        }
#endif
        while (p < end && !Kind::Is(*p)) {
            ++p;
        }
        return p;
    }

private:
#ifdef __SSE2__
    // The last window ends with the text, and some of it has been looked at before.
    char const* InWindows(char const* p) {
        for (;;) {
            for (; found != 0; found &= found - 1) {
                char const* const mark = next - Window::size + __builtin_ctz(found);
                if (mark >= p) {
                    return mark;
                }
            }
            if (next == end) {
                return end;
            }
            char const* const window = std::min(std::max(next, p), end - Window::size);
            found = Kind::InWindow(window);
            next = window + Window::size;
        }
    }
#endif

    [[maybe_unused]] char const* const begin;
    [[maybe_unused]] char const* next;    // behind the window that was looked at last
    [[maybe_unused]] unsigned found = 0;  // in that window, and not yet told
    char const* const end;
};

}  // namespace Quillo

#endif
