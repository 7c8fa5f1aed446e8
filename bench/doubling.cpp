// Texts that double, through the functions that read a request: "FUNCTION, PATTERN/BYTES". Twice
// the text takes about twice the time.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <quillo>
#include <string>
#include <vector>

#include "quiet_platform.hpp"

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

// The text is the answer to the query.
void Query(std::string const& text) {
    Bench::answer = text;
    ZOV_AppData request = {};
    std::vector<std::vector<std::string>> rows;
    if (GetObject(request, ObjectType_Sys, "interfaces", {"name", "mtu"}, rows) != 0) {
        std::fprintf(stderr, "doubling: no pipe holds the %zu bytes of an answer\n", text.size());
        std::exit(1);
    }
    benchmark::DoNotOptimize(rows.data());
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

// A pattern as it is shown, and as it is.
struct Pattern {
    std::string name;
    std::string text;
};

void Register(std::string const& name, void (*call)(std::string const&),
              std::string const& pattern) {
    benchmark::RegisterBenchmark(
        name.c_str(), [call, pattern](benchmark::State& state) { Measure(state, call, pattern); })
        ->RangeMultiplier(2)
        ->Range(smallest, largest);
}

void RegisterAll(std::string const& function, void (*call)(std::string const&),
                 std::vector<Pattern> const& patterns) {
    for (Pattern const& pattern : patterns) {
        Register(std::string(function).append(", ").append(pattern.name), call, pattern.text);
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
    std::vector<Pattern> const queries = {
        {"&", "&"}, {"=", "="}, {"a=&", "a=&"}, {"%", "%"}, {"a=1&b=2&", "a=1&b=2&"}};
    std::vector<Pattern> const answers = {
        {"a", "a"}, {"TAB", "\t"}, {"NL", "\n"}, {"a TAB b NL", "a\tb\n"}};
    RegisterAll("ParseUri", Parse, queries);
    RegisterAll("GetUriArgs", Read, queries);
    RegisterAll("Split", SplitAtAll, queries);
    RegisterAll("GetObject", Query, answers);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
