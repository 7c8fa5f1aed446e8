#include <quillo_kit/safe.hpp>

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "kit/style_properties.hpp"
#include "text/sample_texts.hpp"

using namespace QuilloKit;

namespace {

struct Row {
    std::string property;
    std::string value;
    std::string declaration;
};

TEST(SafeStyle, AnAllowedPropertyWithAnAllowedValueIsADeclaration) {
    for (Row const& row :
         std::vector<Row>{{"color", "red", "color: red"},
                          {"color", "#fff", "color: #fff"},
                          {"background-color", "#1c2A30", "background-color: #1c2A30"},
                          {"width", "0", "width: 0"},
                          {"width", "1.5em", "width: 1.5em"},
                          {"width", "100%", "width: 100%"},
                          {"display", "inline-block", "display: inline-block"},
                          {"border", "1px solid #d6dbe1", "border: 1px solid #d6dbe1"},
                          {"margin", "  0   auto ", "margin: 0 auto"},
                          {"word-spacing", "2px", "word-spacing: 2px"}}) {
        EXPECT_EQ(SafeStyle(row.property, row.value), row.declaration);
    }
}

TEST(SafeStyle, EveryPropertyOfTheListIsAllowed) {
    std::istringstream properties(allowedStyleProperties);
    int count = 0;
    for (std::string property; properties >> property; ++count) {
        EXPECT_EQ(SafeStyle(property, "inherit"), property + ": inherit");
    }
    EXPECT_EQ(count, 57);
}

TEST(SafeStyle, EveryUnitIsOneOfTheList) {
    for (std::string const unit :
         {"%", "ch", "cm", "em", "ex", "fr", "in", "mm", "pc", "pt", "px", "rem", "vh", "vw"}) {
        EXPECT_EQ(SafeStyle("width", "12" + unit), "width: 12" + unit);
    }
    for (std::string const unit : {"x", "PX", "px%", "%%", "deg", "e3", "emm", "-", "px-"}) {
        EXPECT_EQ(SafeStyle("width", "12" + unit), "") << unit;
    }
}

TEST(SafeStyle, AnyOtherPropertyGivesNothing) {
    for (std::string const property :
         {"",          "background", "background-image", "behavior", "-moz-binding", "position",
          "z-index",   "left",       "content",          "cursor",   "filter",       "font-family",
          "src",       "transform",  "animation",        "--x",      "COLOR",        "Color",
          " color",    "color ",     "color:red;width",  "col\\6Fr", "colo",         "colors",
          "color/**/", "list-style", "border-image",     "@import",  "expression"}) {
        EXPECT_EQ(SafeStyle(property, "red"), "") << property;
    }
    EXPECT_EQ(SafeStyle(std::string("color\0", 6), "red"), "");
}

TEST(SafeStyle, AnyOtherValueGivesNothing) {
    for (std::string const value : {"",
                                    " ",
                                    "red;",
                                    "red;position:fixed",
                                    "1em; position: fixed",
                                    "url(/a.png)",
                                    "URL(javascript:x)",
                                    "expression(alert(1))",
                                    "expression/**/(1)",
                                    "rgb(1,2,3)",
                                    "calc(1px)",
                                    "var(--x)",
                                    "red}",
                                    "{red",
                                    "red!important",
                                    "red !important",
                                    "\"red\"",
                                    "'red'",
                                    "\\72 ed",
                                    "r\\65 d",
                                    "red/*",
                                    "</style>",
                                    "<!--",
                                    "a,b",
                                    "-red",
                                    "-1px",
                                    "+1px",
                                    "1.",
                                    ".5em",
                                    "1.px",
                                    "1..2",
                                    "1.2.3",
                                    "1 px 2 +",
                                    "#",
                                    "#ff",
                                    "#ffff",
                                    "#fffffff",
                                    "#ggg",
                                    "#fff-",
                                    "##fff",
                                    "red\n",
                                    "red\tblue",
                                    "red\x01",
                                    "\xC3\xBC",
                                    "javascript:x",
                                    "@x",
                                    "a=b",
                                    "a&b",
                                    "1px 2px;"}) {
        EXPECT_EQ(SafeStyle("color", value), "") << value;
    }
    EXPECT_EQ(SafeStyle("color", std::string("red\0", 4)), "");
    EXPECT_EQ(SafeStyle("color", std::string("red\0;x:y", 8)), "");
    EXPECT_EQ(SafeStyle("color", std::string("\0red", 4)), "");
}

// The rule of values once more, as a regular expression.
bool IsAllowed(std::string const& value) {
    static std::regex const words(
        " *([A-Za-z][A-Za-z-]*|#[0-9A-Fa-f]{3}|#[0-9A-Fa-f]{6}|"
        "[0-9]+([.][0-9]+)?(%|ch|cm|em|ex|fr|in|mm|pc|pt|px|rem|vh|vw)?)"
        "( +([A-Za-z][A-Za-z-]*|#[0-9A-Fa-f]{3}|#[0-9A-Fa-f]{6}|"
        "[0-9]+([.][0-9]+)?(%|ch|cm|em|ex|fr|in|mm|pc|pt|px|rem|vh|vw)?))* *");
    return std::regex_match(value, words);
}

void ExpectTheRule(std::string const& value) {
    EXPECT_EQ(SafeStyle("color", value) != "", IsAllowed(value)) << value;
}

TEST(SafeStyle, EveryByteInEveryPlaceFollowsTheRule) {
    for (std::string const value : {"", "red", "#fff", "12px", "1.5%", "1px solid"}) {
        for (char const c : AllBytes()) {
            for (std::size_t at = 0; at <= value.size(); ++at) {
                ExpectTheRule(std::string(value).insert(at, 1, c));
            }
        }
    }
    for (char const c : AllBytes()) {
        EXPECT_EQ(SafeStyle(std::string("colo") + c, "red") != "", c == 'r') << int(c);
        EXPECT_EQ(SafeStyle(std::string("color") + c, "red"), "") << int(c);
    }
}

TEST(SafeStyle, EveryShortValueFollowsTheRule) {
    for (std::string const& value : AllTexts("px1.#- ;", 4)) {
        ExpectTheRule(value);
    }
    for (std::string const& value : RandomTexts("a1.#-% em", 14, 3000)) {
        ExpectTheRule(value);
    }
}

}  // namespace
