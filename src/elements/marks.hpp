#ifndef QUILLO_ELEMENTS_MARKS_HPP
#define QUILLO_ELEMENTS_MARKS_HPP

#include <algorithm>

#include "elements/small.hpp"
#include "elements/window.hpp"

namespace Quillo {

// The bytes of one kind in a text, which are found one after the other:
//
//     Marks<NotPlain> marks(text, end);
//     for (char const* p = marks.From(text); p != end; p = marks.From(p + 1)) { ... }
//
// A kind tells of a byte whether it `Is` a mark, and which bytes of a window are (`InWindow`).
template <class Kind>
class Marks {
public:
    Marks(char const* text, char const* textEnd) : next(text), end(textEnd) {}

    // The first one from `p` up, or the end. `p` lies in the text or at its end, and never goes
    // back.
    char const* From(char const* p) {
#ifdef __SSE2__
        while (!isSmall) {
            for (; found != 0; found &= found - 1) {
                char const* const mark = next - Window::size + __builtin_ctz(found);
                if (mark >= p) {
                    return mark;
                }
            }
            next = std::max(next, p);
            if (end - next < Window::size) {
                p = next;
                break;
            }
            found = Kind::InWindow(next);
            next += Window::size;
        }
#endif
        while (p < end && !Kind::Is(*p)) {
            ++p;
        }
        return p;
    }

private:
    [[maybe_unused]] char const* next;    // the next window's earliest place
    [[maybe_unused]] unsigned found = 0;  // in the window before it, from the one told last on
    char const* const end;
};

}  // namespace Quillo

#endif
