// The kit's safe helpers: what they let through is read as a browser reads it, and judged by what
// it must not be.
#include <quillo_kit/safe.hpp>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "feed.hpp"
#include "kit/style_properties.hpp"
#include "library.hpp"
#include "oracle.hpp"
#include "pieces.hpp"

using namespace QuilloKit;

namespace {

std::string const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
std::string const wordBytes = letters + "0123456789_";
std::string const valueBytes = letters + "0123456789 #%.-";

bool IsControl(char c) {
    unsigned char const byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

// The text that an attribute's value stands for, between quotes of either kind.
std::string AttributeText(std::string const& value) {
    static std::map<std::string, char> const entities = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#39;", '\''}, {"&amp;", '&'}};
    std::string text;
    for (std::size_t at = 0; at < value.size(); ++at) {
        bool const isKept = value[at] == '\t' || value[at] == '\n' || !IsControl(value[at]);
        Expect(isKept, "an attribute's value holds no control byte", value);
        Expect(std::string_view("<>\"'").find(value[at]) == std::string::npos,
               "an attribute's value ends no attribute and begins no tag", value);
        if (value[at] != '&') {
            text += value[at];
            continue;
        }
        std::string const entity = value.substr(at, value.find(';', at) + 1 - at);
        auto const found = entities.find(entity);
        Expect(found != entities.end(), "an '&' in an attribute's value is an entity", value);
        text += found->second;
        at += entity.size() - 1;
    }
    return text;
}

void CheckAttr(std::string const& text) {
    std::string seen = text.c_str();
    std::replace_if(
        seen.begin(), seen.end(), [](char c) { return IsControl(c) && c != '\t' && c != '\n'; },
        '_');
    ExpectEqual(AttributeText(SafeAttr(text)), seen, "SafeAttr: a browser reads the text");
}

// A URL as a browser reads it (URL Standard, 4.4): states of the basic parser.
std::string ReadUrl(std::string url) {
    while (!url.empty() && static_cast<unsigned char>(url.front()) <= 0x20) {
        url.erase(0, 1);
    }
    while (!url.empty() && static_cast<unsigned char>(url.back()) <= 0x20) {
        url.pop_back();
    }
    for (char const dropped : {'\t', '\n', '\r'}) {
        url.erase(std::remove(url.begin(), url.end(), dropped), url.end());
    }
    return url;
}

std::string Scheme(std::string const& url) {
    std::string scheme;
    for (char const c : url) {
        bool const isLetter = letters.find(c) != std::string::npos;
        bool const isLater = (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
        if (c == ':') {
            return scheme;
        }
        if (!isLetter && (scheme.empty() || !isLater)) {
            return "";
        }
        scheme += isLetter ? static_cast<char>(c | 0x20) : c;
    }
    return "";
}

void CheckUrl(std::string const& url) {
    std::string const written = AttributeText(SafeUrl(url));
    std::string const read = ReadUrl(url);
    static std::set<std::string> const allowed = {"", "http", "https", "mailto"};
    Expect(allowed.count(Scheme(ReadUrl(written))) == 1, "SafeUrl: an allowed scheme or none",
           written);
    Expect(written == read || written == "#", "SafeUrl: the URL itself or \"#\"", written);
    Expect(std::none_of(written.begin(), written.end(), IsControl),
           "SafeUrl: no control byte is left", written);
    bool const isAllowed = allowed.count(Scheme(read)) == 1 && !Scheme(read).empty();
    bool const isPath = read.find_first_of("/?#") <= read.find(':');
    bool const isClean = std::none_of(read.begin(), read.end(), IsControl);
    ExpectEqual(SafeUrl(read), SafeUrl(url), "SafeUrl: what a browser drops is dropped first");
    ExpectEqual(written, (isAllowed || isPath) && isClean ? read : "#",
                "SafeUrl: what is harmless passes, and nothing else");
}

std::vector<std::string> const styleProperties = Pieces(allowedStyleProperties, " ");

bool IsMadeOf(std::string const& text, std::string const& set) {
    return !text.empty() && text.find_first_not_of(set) == std::string::npos;
}

// A keyword, a colour of 3 or 6 digits, or a number that may have a part behind a point and a unit.
bool IsStyleWord(std::string const& word) {
    static std::set<std::string> const units = {"",   "%",  "ch", "cm", "em",  "ex", "fr", "in",
                                                "mm", "pc", "pt", "px", "rem", "vh", "vw"};
    if (word[0] == '#') {
        return (word.size() == 4 || word.size() == 7) &&
               IsMadeOf(word.substr(1), "0123456789ABCDEFabcdef");
    }
    if (letters.find(word[0]) != std::string::npos) {
        return IsMadeOf(word, letters + "-");
    }
    std::size_t const end = std::min(word.find_first_not_of("0123456789."), word.size());
    std::vector<std::string> const parts = Pieces(word.substr(0, end), ".");
    return parts.size() <= 2 && IsMadeOf(parts.front(), "0123456789") &&
           IsMadeOf(parts.back(), "0123456789") && units.count(word.substr(end)) == 1;
}

std::string Declaration(std::string const& property, std::string const& value) {
    std::string declaration = property + ":";
    bool isAllowed = std::count(styleProperties.begin(), styleProperties.end(), property) == 1;
    for (std::string const& word : Pieces(value, " ")) {
        isAllowed = isAllowed && (word.empty() || IsStyleWord(word));
        declaration += word.empty() ? "" : " " + word;
    }
    return isAllowed && declaration.back() != ':' ? declaration : "";
}

// The tokens of a value by the rules of CSS; none of them may be more than a word.
void CheckStyle(std::string const& property, std::string const& value) {
    std::string const style = SafeStyle(property, value);
    ExpectEqual(style, Declaration(property, value),
                "SafeStyle: an allowed property with words of three forms, and nothing else");
    ExpectEqual(SafeStyle(property + ":", value), std::string(), "SafeStyle: a property is a word");
    if (style.empty()) {
        return;
    }
    for (char const* loaded : {"url", "position", "behavior", "binding", "content", "filter"}) {
        Expect(property.find(loaded) == std::string::npos, "SafeStyle: no property that loads",
               property);
    }
    std::string const written = style.substr(property.size() + 2);
    Expect(written.find_first_not_of(valueBytes) == std::string::npos,
           "SafeStyle: no byte that ends a declaration or calls a function", style);
    ExpectEqual(AttributeText(style), style, "SafeStyle: fit for an attribute");
}

// A value of words that are allowed, each made of one of the first bytes of `text`.
std::string StyleValue(std::string const& text) {
    static char const* const units[] = {"", "%", ".5em", ".25rem", "px", "fr", "vh", "pt"};
    std::string value;
    for (char const c : text.substr(0, 12)) {
        unsigned const byte = static_cast<unsigned char>(c);
        std::string const word(1 + byte / 32, letters[byte % letters.size()]);
        std::string const digits = std::to_string(100 + byte);
        if (byte % 3 == 0) {
            value.append(word).append("-").append(word);
        } else if (byte % 3 == 1) {
            value.append("#").append(digits).append(byte % 2 == 0 ? digits : "");
        } else {
            value.append(digits).append(units[byte / 32]);
        }
        value += byte % 2 == 0 ? " " : "  ";
    }
    return value;
}

// A script's string, read by the rules of JSON and of JavaScript.
std::string ScriptText(std::string const& js) {
    Expect(js.size() >= 2 && js.front() == '"' && js.back() == '"', "JsString: is quoted", js);
    std::string text;
    for (std::size_t at = 1; at + 1 < js.size(); ++at) {
        Expect(!(static_cast<unsigned char>(js[at]) < 0x20) && js[at] != '<' && js[at] != '"',
               "JsString: no byte that ends the string, the line or the script", js);
        if (js[at] != '\\') {
            text += js[at];
            continue;
        }
        ++at;
        Expect(at + 1 < js.size() && std::string_view("\\\"u").find(js[at]) != std::string::npos,
               "JsString: an escape of JSON", js);
        if (js[at] != 'u') {
            text += js[at];
            continue;
        }
        std::string const digits = js.substr(at + 1, 4);
        at += 4;
        Expect(
            at + 1 < js.size() && digits.find_first_not_of("0123456789ABCDEF") == std::string::npos,
            "JsString: four digits", js);
        int const code = std::stoi(digits, nullptr, 16);
        text += code == 0x2028   ? std::string("\xE2\x80\xA8")
                : code == 0x2029 ? std::string("\xE2\x80\xA9")
                                 : std::string(1, static_cast<char>(code));
        Expect(code < 0x80 || code == 0x2028 || code == 0x2029, "JsString: no other code", js);
    }
    return text;
}

void CheckScript(std::string const& text) {
    std::string const js = JsString(text);
    ExpectEqual(ScriptText(js), text, "JsString: a script reads the text");
    Expect(js.find("\xE2\x80\xA8") == std::string::npos &&
               js.find("\xE2\x80\xA9") == std::string::npos,
           "JsString: no line separator", js);
    if (std::none_of(js.begin(), js.end(), IsControl)) {
        ExpectEqual(AttributeText(SafeAttr(js)), js, "JsString: fit for an event's attribute");
    }
}

void CheckName(std::string const& name) {
    bool isName = !name.empty() && !(name[0] >= '0' && name[0] <= '9');
    for (char const c : name) {
        isName = isName && wordBytes.find(c) != std::string::npos;
    }
    bool isRefused = false;
    try {
        ExpectEqual(SafeName(name), name, "SafeName: the name itself");
    } catch (std::invalid_argument const& error) {
        isRefused = true;
        Expect(std::string(error.what()).compare(0, 10, "SafeName: ") == 0,
               "SafeName: a refusal says who refuses", error.what());
    }
    ExpectEqual(isRefused, !isName, "SafeName: a letter or '_', then letters, digits and '_'");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    static char const* const properties[] = {"color", "width", "border", "background-image"};
    unsigned const chosen = feed.Below(6);
    unsigned const one = feed.Below(static_cast<unsigned>(styleProperties.size()));
    std::string const property = chosen < 4 ? properties[chosen] : feed.Text();
    std::string const text = feed.Rest();
    CheckAttr(text);
    CheckUrl(text);
    CheckUrl("http:" + text);
    CheckUrl("javascript:" + text);
    CheckStyle(property, text);
    CheckStyle(property, StyleValue(text));
    CheckStyle(styleProperties[one], StyleValue(text) + text);
    CheckScript(text);
    CheckName(text);
    ResetLibrary();
}
