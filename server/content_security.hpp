// The Content-Security-Policy of a page.
#ifndef QUILLO_SERVER_CONTENT_SECURITY_HPP
#define QUILLO_SERVER_CONTENT_SECURITY_HPP

#include <string>
#include <string_view>

namespace QuilloServer {

// What a browser may do with `html`: load scripts, styles, images and data from here and send forms
// here, no more; nobody may frame it. Inline in the page are allowed, each by its digest,
//
// - the script that the library writes behind a form, and no other: a text that slipped into the
//   page unescaped cannot be run;
// - the style sheets in the page's head, where no data stands.
//
// Style attributes are allowed as they are: the library writes them, and they run nothing.
std::string SecurityPolicy(std::string_view html);

}  // namespace QuilloServer

#endif
