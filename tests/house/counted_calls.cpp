#include "counted_calls.hpp"

#include <malloc.h>
#include <valgrind/callgrind.h>

#include <quillo>

namespace {

constexpr std::size_t half = 16384;

// What a call reports stays in `debugMsgs`: letting go of it belongs to the call.
void Run(Call const& call, std::string const& text) {
    call(text);
    Quillo::debugMsgs = Quillo::Div();
}

void Count(std::string const& name, Call const& call, std::string const& text) {
    malloc_trim(0);  // to put together what earlier calls let go of is not this one's
    CALLGRIND_ZERO_STATS;
    Run(call, text);
    std::string const part = std::string(name).append("/").append(std::to_string(text.size()));
    CALLGRIND_DUMP_STATS_AT(part.c_str());
}

// A pattern as it stands in a line of the output; '/' sets the size apart from the name.
std::string Shown(std::string const& pattern) {
    static char const digits[] = "0123456789ABCDEF";
    std::string shown;
    for (char const c : pattern) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte > ' ' && byte < 0x7F && c != '/') {
            shown += c;
        } else {
            shown.append("\\x").append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
        }
    }
    return shown;
}

}  // namespace

void CountCalls(std::string const& name, Call const& call, MakeText const& makeText) {
    // The first call finds the functions of shared libraries.
    Run(call, makeText(256));
    Count(name, call, makeText(half));
    Count(name, call, makeText(2 * half));
}

void CountPatterns(std::string const& function, Call const& call,
                   std::vector<std::string> const& patterns) {
    for (std::string const& pattern : patterns) {
        CountCalls(function + ", " + Shown(pattern), call, [&](std::size_t size) {
            std::string text;
            while (text.size() < size) {
                text += pattern;
            }
            text.resize(size);
            return text;
        });
    }
}

MakeText Numbered(std::string const& piece) {
    return [=](std::size_t size) {
        std::string text;
        for (int i = 0; text.size() < size; ++i) {
            for (char const c : piece) {
                text += c == '#' ? std::to_string(i) : std::string(1, c);
            }
        }
        text.resize(size);
        return text;
    };
}
