#ifndef QUILLO_BENCH_READINGS_HPP
#define QUILLO_BENCH_READINGS_HPP

#include <cstddef>
#include <string>
#include <vector>

namespace Bench {

// A function that reads a request, and the pattern of a text for it. The name is
// "FUNCTION, PATTERN".
struct Reading {
    std::string name;
    void (*call)(std::string const& text);
    std::string pattern;
};

// Each function with each of its patterns. What a call reports stays in `debugMsgs`.
std::vector<Reading> Readings();

// The pattern over and over, `size` bytes of it.
std::string Repeated(std::string const& pattern, std::size_t size);

}  // namespace Bench

#endif
