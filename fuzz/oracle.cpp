#include "oracle.hpp"

#include <cstdio>
#include <cstdlib>

void Fail(std::string_view rule, std::string_view detail) {
    std::fprintf(stderr, "fuzz: this does not hold: %s\n%s\n", std::string(rule).c_str(),
                 std::string(detail).c_str());
    std::abort();
}

std::string Shown(std::string const& text) {
    static char const digits[] = "0123456789abcdef";
    std::string shown = "\"";
    for (char const c : text) {
        unsigned const byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte >= 0x7F || c == '"' || c == '\\') {
            shown += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
        } else {
            shown += c;
        }
    }
    return shown + '"';
}
