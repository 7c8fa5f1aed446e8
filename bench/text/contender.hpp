// One library's way to do a text's work. All contenders of a work give the same text.
#ifndef QUILLO_BENCH_TEXT_CONTENDER_HPP
#define QUILLO_BENCH_TEXT_CONTENDER_HPP

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace Bench {

struct TextContender {
    char const* name;
    // Does the work on `text`. Into `copy` goes the result, unless null: what is timed copies none.
    void (*run)(std::string const& text, std::string* copy);
};

// What a contender does with its result before it lets go of it. The pointer is const: of one that
// is not, the benchmark's library tells the compiler that it changes, and GCC may then lose it.
inline void Take(char const* const result, std::string* copy) {
    benchmark::DoNotOptimize(result);
    if (copy != nullptr) {
        *copy = result;
    }
}

// The contenders of a work. The first is Quillo.
std::vector<TextContender> const& Filters();
std::vector<TextContender> const& Encoders();
std::vector<TextContender> const& Decoders();

}  // namespace Bench

#endif
