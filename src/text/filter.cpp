// Text as HTML text: a byte becomes itself, an entity, or '_' behind a warning.
#include <cctype>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

// A letter of the process's locale, a digit, or any byte of a multi-byte UTF-8 sequence.
bool IsPlain(unsigned char byte) {
    return std::isalpha(byte) != 0 || (byte >= '0' && byte <= '9') || byte >= 0x80;
}

bool IsControl(unsigned char byte) {
    return (byte < 0x20 && byte != '\t' && byte != '\n') || byte == 0x7F;
}

void AppendFiltered(char c, std::string& filtered) {
    unsigned char const byte = static_cast<unsigned char>(c);
    if (IsPlain(byte)) {
        filtered += c;
    } else if (c == '<') {
        filtered += "&lt;";
    } else if (c == '>') {
        filtered += "&gt;";
    } else if (c == '&') {
        filtered += "&amp;";
    } else if (c == '"') {
        filtered += "&quot;";
    } else if (IsControl(byte)) {
        ReportDiagnostic(logSpecWarn, "Don't know tag for '%c'", byte);
        filtered += '_';
    } else {
        filtered += c;
    }
}

}  // namespace

std::string Filter(char const* text) {
    std::string filtered;
    for (char const* p = Cstr(text); *p != '\0'; ++p) {
        AppendFiltered(*p, filtered);
    }
    return filtered;
}

std::string Filter(std::string const& text) {
    return Filter(text.c_str());
}

}  // namespace Quillo
