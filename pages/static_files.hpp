// Where the files lie that pages refer to, besides the images whose places the widgets fix.
#ifndef QUILLO_PAGES_STATIC_FILES_HPP
#define QUILLO_PAGES_STATIC_FILES_HPP

namespace Pages {

extern char const styleSheetPath[];
extern char const styleSheet[];  // its text, which is static/style.css
extern char const liveScriptPath[];
extern char const liveScript[];  // static/live.js
extern char const icon[];        // static/icon.svg

}  // namespace Pages

#endif
