// Text as HTML text: a byte becomes itself, an entity, or '_' behind a warning.
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

// A byte that is not plain.
void AppendChanged(char c, std::string& filtered) {
    if (c == '<') {
        filtered += "&lt;";
    } else if (c == '>') {
        filtered += "&gt;";
    } else if (c == '&') {
        filtered += "&amp;";
    } else if (c == '"') {
        filtered += "&quot;";
    } else {
        ReportDiagnostic(logSpecWarn, "Don't know tag for '%c'", static_cast<unsigned char>(c));
        filtered += '_';
    }
}

}  // namespace

std::string Filter(char const* text) {
    std::string filtered;
    char const* const end = Cstr(text) + std::strlen(Cstr(text));
    for (char const* p = Cstr(text);; ++p) {
        char const* const plain = p;
        p = EndOfPlain(plain, end);
        filtered.append(plain, static_cast<std::size_t>(p - plain));
        if (p == end) {
            return filtered;
        }
        AppendChanged(*p, filtered);
    }
}

std::string Filter(std::string const& text) {
    return Filter(text.c_str());
}

}  // namespace Quillo
