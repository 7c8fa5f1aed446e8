// How a phrase is written, by the context of its request.
//
//     context   for                                   a "b" <c>\ gives
//     none      text that is escaped later            a "b" <c>\            (as it stands)
//     html      HTML text and quoted attributes       a &quot;b&quot; &lt;c&gt;\                .
//     js        the inside of a quoted script string  a \"b\" \u003Cc>\\                        .
//     php       the inside of '...'                   a "b" <c>\\                               .
//     both      HTML inside a quoted script string    html, and the result of it as js
//
// Without a context, and with one that is none of these, a phrase is written as for html: the
// page's author who thought of none gets the one that is safe in a page.
#ifndef QUILLO_HOST_PHRASE_CONTEXT_HPP
#define QUILLO_HOST_PHRASE_CONTEXT_HPP

#include <string>

namespace QuilloHost {

std::string InContext(std::string const& context, std::string const& phrase);

}  // namespace QuilloHost

#endif
