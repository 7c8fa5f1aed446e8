#include "host/phrase_context.hpp"

#include <map>

namespace QuilloHost {

namespace {

// What stands for a piece of text in a context.
typedef std::map<std::string, char const*> Escapes;

// The longest piece that has an escape: a line separator in UTF-8.
constexpr std::size_t longestPiece = 3;

Escapes const htmlEscapes = {
    {"<", "&lt;"}, {">", "&gt;"}, {"&", "&amp;"}, {"\"", "&quot;"}, {"'", "&#39;"}};

// '<' too, so that no script is ended by its own text, and the two line ends beside the newline
// that scripts know (ECMA-262, 12.3).
Escapes const jsEscapes = {{"\\", "\\\\"},
                           {"\"", "\\\""},
                           {"'", "\\'"},
                           {"\n", "\\n"},
                           {"\r", "\\r"},
                           {"<", "\\u003C"},
                           {"\xE2\x80\xA8", "\\u2028"},
                           {"\xE2\x80\xA9", "\\u2029"}};

Escapes const phpEscapes = {{"\\", "\\\\"}, {"'", "\\'"}};

std::string Escaped(std::string const& text, Escapes const& escapes) {
    std::string escaped;
    for (std::size_t i = 0; i < text.size();) {
        std::size_t size = longestPiece;
        while (size > 0 && escapes.count(text.substr(i, size)) == 0) {
            --size;
        }
        if (size == 0) {
            escaped += text[i++];
        } else {
            escaped += escapes.at(text.substr(i, size));
            i += size;
        }
    }
    return escaped;
}

}  // namespace

std::string InContext(std::string const& context, std::string const& phrase) {
    if (context == "none") {
        return phrase;
    }
    if (context == "js") {
        return Escaped(phrase, jsEscapes);
    }
    if (context == "php") {
        return Escaped(phrase, phpEscapes);
    }
    std::string const html = Escaped(phrase, htmlEscapes);
    return context == "both" ? Escaped(html, jsEscapes) : html;
}

}  // namespace QuilloHost
