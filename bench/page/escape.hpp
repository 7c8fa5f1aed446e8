// Escaping for the contenders that have none.
#ifndef QUILLO_BENCH_PAGE_ESCAPE_HPP
#define QUILLO_BENCH_PAGE_ESCAPE_HPP

#include <string>

namespace Bench {

inline std::string Escaped(std::string const& text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (char const c : text) {
        switch (c) {
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '&':
                escaped += "&amp;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

}  // namespace Bench

#endif
