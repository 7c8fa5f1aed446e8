// Texts that double, through the functions that read a request: "FUNCTION, PATTERN/BYTES". Twice
// the text takes about twice the time.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <quillo>
#include <string>
#include <vector>

using namespace Quillo;

namespace {

constexpr int smallest = 1 << 16;
constexpr int largest = 1 << 20;

std::string Repeated(std::string const& pattern, std::size_t size) {
    std::string text;
    text.reserve(size + pattern.size());
    while (text.size() < size) {
        text += pattern;
    }
    text.resize(size);
    return text;
}

void Parse(std::string const& text) {
    std::string dir;
    std::string page;
    UriArgs args;
    benchmark::DoNotOptimize(ParseUri("/dir/page?" + text, dir, page, args));
}

void Read(std::string const& text) {
    ZOV_AppData request = {};
    request.uriArgs = text.c_str();
    benchmark::DoNotOptimize(GetUriArgs(request, UriArgs()));
}

void SplitAtAll(std::string const& text) {
    std::vector<std::string> fields;
    Split(text, "&=%", fields, KeepEmpty);
    benchmark::DoNotOptimize(fields.data());
}

// What a call reports stays in `debugMsgs`, so each call starts with an empty one. The time of
// letting go of the lines belongs to the call that made them.
void Measure(benchmark::State& state, void (*call)(std::string const&),
             std::string const& pattern) {
    std::string const text = Repeated(pattern, static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        call(text);
        debugMsgs = Div();
    }
}

void Register(std::string const& function, void (*call)(std::string const&)) {
    for (std::string const pattern : {"&", "=", "a=&", "%", "a=1&b=2&"}) {
        benchmark::RegisterBenchmark(
            (function + ", " + pattern).c_str(),
            [call, pattern](benchmark::State& state) { Measure(state, call, pattern); })
            ->RangeMultiplier(2)
            ->Range(smallest, largest);
    }
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
    Register("ParseUri", Parse);
    Register("GetUriArgs", Read);
    Register("Split", SplitAtAll);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
