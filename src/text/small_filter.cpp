// In the place of filter.cpp, in the small library: the same, appended piece by piece.
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {

char const* Replacement(char byte) {
    switch (byte) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '"':
            return "&quot;";
        default:
            ReportDiagnostic(logSpecWarn, "Don't know tag for '%c'",
                             static_cast<unsigned char>(byte));
            return "_";
    }
}

std::string Filter(char const* text) {
    char const* p = Cstr(text);
    char const* const end = p + std::strlen(p);
    std::string filtered;
    for (;; ++p) {
        char const* const plain = p;
        p = EndOfPlain(plain, end);
        filtered.append(plain, static_cast<std::size_t>(p - plain));
        if (p == end) {
            return filtered;
        }
        filtered += Replacement(*p);
    }
}

std::string Filter(std::string const& text) {
    return Filter(text.c_str());
}

}  // namespace Quillo
