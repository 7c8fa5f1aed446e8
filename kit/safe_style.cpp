// CSS declarations by allow-list: the properties are words of a list, the values words of three
// forms. No word holds a byte that could end a declaration, open a string or call a function.
#include <algorithm>
#include <iterator>
#include <quillo>

#include "quillo_kit/safe.hpp"

namespace QuilloKit {
namespace {

char const* const properties[] = {"background-color",
                                  "border",
                                  "border-bottom",
                                  "border-collapse",
                                  "border-color",
                                  "border-left",
                                  "border-radius",
                                  "border-right",
                                  "border-spacing",
                                  "border-style",
                                  "border-top",
                                  "border-width",
                                  "caption-side",
                                  "color",
                                  "column-gap",
                                  "direction",
                                  "display",
                                  "font-size",
                                  "font-style",
                                  "font-variant",
                                  "font-weight",
                                  "gap",
                                  "height",
                                  "letter-spacing",
                                  "line-height",
                                  "list-style-type",
                                  "margin",
                                  "margin-bottom",
                                  "margin-left",
                                  "margin-right",
                                  "margin-top",
                                  "max-height",
                                  "max-width",
                                  "min-height",
                                  "min-width",
                                  "opacity",
                                  "overflow",
                                  "overflow-x",
                                  "overflow-y",
                                  "padding",
                                  "padding-bottom",
                                  "padding-left",
                                  "padding-right",
                                  "padding-top",
                                  "row-gap",
                                  "table-layout",
                                  "text-align",
                                  "text-decoration",
                                  "text-indent",
                                  "text-transform",
                                  "unicode-bidi",
                                  "vertical-align",
                                  "visibility",
                                  "white-space",
                                  "width",
                                  "word-break",
                                  "word-spacing"};

char const* const units[] = {"",   "%",  "ch", "cm", "em",  "ex", "fr", "in",
                             "mm", "pc", "pt", "px", "rem", "vh", "vw"};

char const letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
char const digits[] = "0123456789";

template <class Table>
bool IsIn(Table const& table, std::string const& word) {
    return std::find(std::begin(table), std::end(table), word) != std::end(table);
}

// How many bytes of `word` from `at` on are of `set`.
std::size_t Count(std::string const& word, std::size_t at, char const* set) {
    return std::min(word.find_first_not_of(set, at), word.size()) - at;
}

// bold, inline-block
bool IsKeyword(std::string const& word) {
    return Count(word, 0, letters) > 0 &&
           word.find_first_not_of(std::string(letters) + "-") == std::string::npos;
}

// #fff, #1c2530
bool IsColour(std::string const& word) {
    return word[0] == '#' && (word.size() == 4 || word.size() == 7) &&
           Count(word, 1, "0123456789abcdefABCDEF") == word.size() - 1;
}

// 0, 50%, 1.5em
bool IsQuantity(std::string const& word) {
    std::size_t end = Count(word, 0, digits);
    if (end == 0) {
        return false;
    }
    if (word[end] == '.') {
        std::size_t const decimals = Count(word, end + 1, digits);
        if (decimals == 0) {
            return false;
        }
        end += 1 + decimals;
    }
    return IsIn(units, word.substr(end));
}

bool IsAllowed(std::string const& word) {
    return IsKeyword(word) || IsColour(word) || IsQuantity(word);
}

}  // namespace

std::string SafeStyle(std::string const& property, std::string const& value) {
    std::vector<std::string> words;
    Quillo::Split(value, " ", words, Quillo::SkipEmpty);
    bool const isWhole = value.find('\0') == std::string::npos;
    if (!isWhole || words.empty() || !IsIn(properties, property) ||
        !std::all_of(words.begin(), words.end(), IsAllowed)) {
        return "";
    }
    std::string declaration = property + ":";
    for (std::string const& word : words) {
        declaration += " " + word;
    }
    return declaration;
}

}  // namespace QuilloKit
