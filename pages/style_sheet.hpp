#ifndef QUILLO_PAGES_STYLE_SHEET_HPP
#define QUILLO_PAGES_STYLE_SHEET_HPP

namespace Pages {

// The style sheet of the sample pages, written into each page so that a page saved to a file is
// whole.
extern char const styleSheet[];

}  // namespace Pages

#endif
