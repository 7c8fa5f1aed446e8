// `Filter` against a table of what each byte becomes, and back.
#include "library.hpp"
#include "oracle.hpp"

using namespace Quillo;

namespace {

// Beyond them a text is not tried in every way: reports take time.
constexpr std::size_t mostReports = 8;

bool IsRefused(char c) {
    unsigned char const byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t' && c != '\n') || byte == 0x7F;
}

std::string EntityOf(char c) {
    switch (c) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        default:
            return std::string(1, IsRefused(c) ? '_' : c);
    }
}

void Replace(std::string& text, std::string const& what, std::string const& by) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

// What a browser reads.
std::string Unescaped(std::string html) {
    Replace(html, "&lt;", "<");
    Replace(html, "&gt;", ">");
    Replace(html, "&quot;", "\"");
    Replace(html, "&amp;", "&");
    return html;
}

// A string is filtered like the text in it, and so is an element's text when it is written.
void CheckString(std::string const& text, std::string const& expected,
                 std::vector<std::string> const& reports) {
    ResetLibrary();
    ExpectEqual(Filter(text), expected, "Filter: a string ends at its first NUL");
    ExpectEqual(Reports(), reports, "Filter: a string is reported alike");
    ExpectEqual(Html(Text(text, true)), expected, "a filtered text is written through Filter");
    ExpectEqual(Html(Text(text, false)), text, "any other text is written as it stands");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    std::string const text = input.c_str();
    std::string expected;
    std::string seen;
    std::vector<std::string> reports;
    for (char const c : text) {
        expected += EntityOf(c);
        seen += IsRefused(c) ? '_' : c;
        if (IsRefused(c)) {
            reports.push_back(std::string("warn: Don't know tag for '") + c + "'");
        }
    }
    std::string const filtered = Filter(TightText(text).c_str());
    ExpectEqual(filtered, expected, "Filter: each byte is itself, an entity or '_'");
    ExpectEqual(Reports(), reports, "Filter: each control byte is reported");
    ExpectEqual(filtered.find_first_of("<>\""), std::string::npos, "Filter: no markup is left");
    ExpectEqual(Unescaped(filtered), seen, "Filter: a browser reads the text");

    ExpectEqual(Filter(nullptr), std::string(), "Filter: null is the empty text");
    if (reports.size() < mostReports) {
        CheckString(input, expected, reports);
    }
    ResetLibrary();
}
