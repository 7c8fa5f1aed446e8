// Text as HTML text: a byte becomes itself, an entity, or '_' behind a warning.
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
    for (char const* p = Cstr(text);; ++p) {
        char const* const end = EndOfPlain(p);
        filtered.append(p, end);
        if (*end == '\0') {
            return filtered;
        }
        AppendChanged(*end, filtered);
        p = end;
    }
}

std::string Filter(std::string const& text) {
    return Filter(text.c_str());
}

}  // namespace Quillo
