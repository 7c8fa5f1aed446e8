// Data in the places of a page where the library writes text as it stands.
//
//     A().SetAttr("href", SafeUrl(url)).SetAttr("title", SafeAttr(title))
//     Div().AddStyle(SafeStyle("width", width))
//     Script("show(" + JsString(name) + ");")
//     Button().SetAttr("onclick", SafeAttr("show(" + JsString(name) + ");"))
//
// Each takes any bytes and looks at ASCII alone, so UTF-8 passes and broken UTF-8 does no harm.
#ifndef QUILLO_KIT_SAFE_HPP
#define QUILLO_KIT_SAFE_HPP

#include <string>

namespace QuilloKit {

// `text` as an attribute's value, between double or single quotes: through `Quillo::Filter`, and
// the single quote escaped too. Ends at the first NUL byte and reports control bytes, as `Filter`
// does.
//
//     a<"b" & 'c'    a&lt;&quot;b&quot; &amp; &#39;c&#39;
std::string SafeAttr(std::string const& text);

// `url` as the value of an attribute that a browser follows or loads; "#" when it is not one of the
// kinds allowed: the schemes http, https and mailto, in any case, and relative references, of which
// "//host" is one and the empty text another.
//
//     /a?b=1&c=2               /a?b=1&amp;c=2
//     java\tscript:alert(1)    #
//
// As a browser does (URL Standard, 4.4), it first drops control bytes and blanks at both ends, and
// tabs, line feeds and carriage returns anywhere. It is stricter than a browser in two ways, each
// of which gives "#": a control byte that is left, NUL and DEL among them; and a ':' ahead of any
// '/', '?' and '#' behind something that is no allowed scheme, though it be none at all (":foo").
std::string SafeUrl(std::string const& url);

// A CSS declaration for `Element::AddStyle`; empty when the property is not one of a list or the
// value is not of a form that is allowed.
//
//     "width" and "1.5em"                    width: 1.5em
//     "width" and "1em; position: fixed"     (empty)
//     "background-image" and "url(/a.png)"   (empty)
//
// The list holds properties of text and of boxes, in lower case: none of them loads anything or
// takes a box out of its place. A value is one or more words with blanks between them: a keyword, a
// number without a sign and with or without a unit, or a colour of 3 or 6 hexadecimal digits.
std::string SafeStyle(std::string const& property, std::string const& value);

// `text` as a string of JavaScript, its double quotes included, to stand in a script, or through
// `SafeAttr` in the attribute of an event. Where `text` is UTF-8, it is a string of JSON too.
//
//     say "</script>"    "say \"\u003C/script>\""
//
// Escapes what `Quillo::EscapeJavascriptString` does, '<', control bytes below 0x20, and U+2028 and
// U+2029, which end a line in old scripts. NUL is escaped like the others.
std::string JsString(std::string const& text);

// `name` itself, if it can name a form or a field and be spelled in a script: a letter of ASCII or
// '_', and then letters, digits and '_'. Else throws std::invalid_argument, for there is no name
// that would do instead; the message shows none of `name`.
//
//     user_1    user_1
std::string SafeName(std::string const& name);

}  // namespace QuilloKit

#endif
