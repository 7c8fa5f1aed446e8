// Calls the functions that read a request with texts of 16 KiB and of 32 KiB. Under callgrind each
// call is a part of its output by itself, named "FUNCTION, PATTERN/BYTES".
#include <valgrind/callgrind.h>

#include <cstddef>
#include <quillo>
#include <string>

#include "readings.hpp"

using namespace Bench;

namespace {

constexpr std::size_t half = 16 * 1024;

// Fields of which no two have the same name.
std::string DifferentNames(std::size_t size) {
    std::string text;
    for (int i = 0; text.size() < size; ++i) {
        text.append(std::to_string(i)).append("=1&");
    }
    text.resize(size);
    return text;
}

// What a call reports stays in `debugMsgs`: letting go of it belongs to the call.
void Call(Reading const& reading, std::string const& text) {
    reading.call(text);
    Quillo::debugMsgs = Quillo::Div();
}

void Count(Reading const& reading, std::string const& text) {
    CALLGRIND_ZERO_STATS;
    Call(reading, text);
    std::string const name =
        std::string(reading.name).append("/").append(std::to_string(text.size()));
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

}  // namespace

int main() {
    for (Reading const& reading : Readings()) {
        // The first call finds the functions of shared libraries.
        Call(reading, reading.pattern);
        Count(reading, Repeated(reading.pattern, half));
        Count(reading, Repeated(reading.pattern, 2 * half));
        // One for each function: its pattern "&" stands for the texts of queries.
        if (reading.pattern == "&") {
            Reading const other = {reading.name.substr(0, reading.name.find(',')) + ", 0=1&1=1&",
                                   reading.call, ""};
            Count(other, DifferentNames(half));
            Count(other, DifferentNames(2 * half));
        }
    }
    return 0;
}
