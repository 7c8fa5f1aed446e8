// Texts that double, through the functions that read a request: "FUNCTION, PATTERN/BYTES". Twice
// the text takes about twice the time.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <quillo>

#include "readings.hpp"

using namespace Bench;

namespace {

constexpr int smallest = 1 << 16;
constexpr int largest = 1 << 20;

// What a call reports stays in `debugMsgs`, so each call starts with an empty one. The time of
// letting go of the lines belongs to the call that made them.
void Measure(benchmark::State& state, Reading const& reading) {
    std::string const text = Repeated(reading.pattern, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        reading.call(text);
        Quillo::debugMsgs = Quillo::Div();
    }
}

void Register(Reading const& reading) {
    benchmark::RegisterBenchmark(reading.name.c_str(),
                                 [reading](benchmark::State& state) { Measure(state, reading); })
        ->RangeMultiplier(2)
        ->Range(smallest, largest);
}

}  // namespace

int main(int argc, char** argv) {
    // Memory is kept between calls: else larger texts pay for fresh pages, and small ones do not.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, -1);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    for (Reading const& reading : Readings()) {
        Register(reading);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
