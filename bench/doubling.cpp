// Texts that double, through the functions that read a request: twice the text takes about twice
// the time. Prints each size's time, and what a doubling costs on the way from the smallest to the
// largest text; fails when that is above the limit. A function that is quadratic somewhere comes
// to 4.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <quillo>
#include <string>
#include <vector>

using namespace Quillo;

namespace {

constexpr int smallest = 1 << 16;
constexpr int largest = 1 << 20;
constexpr int repetitions = 5;
constexpr double limit = 2.3;

// In seconds. What takes less for the largest text is copying, and the caches' sizes decide about
// its ratio; a function that is quadratic takes seconds.
constexpr double noticeable = 0.001;

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

// The fastest repetition of each size, by the benchmark's name. Noise only ever adds time.
class FastestReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const&) override { return true; }

    void ReportRuns(std::vector<Run> const& runs) override {
        for (Run const& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                double const time = run.cpu_accumulated_time / static_cast<double>(run.iterations);
                double& fastest = times_[run.run_name.function_name]
                                      .emplace(std::stoi(run.run_name.args), time)
                                      .first->second;
                fastest = std::min(fastest, time);
            }
        }
    }

    // Whether every doubling costs less than the limit.
    bool Print() const {
        bool isLinear = true;
        std::printf("milliseconds for texts of 64 KiB to 1 MiB; a doubling, at most %.1f\n", limit);
        for (auto const& function : times_) {
            std::map<int, double> const& times = function.second;
            std::printf("%-20s", function.first.c_str());
            for (auto const& size : times) {
                std::printf(" %9.3f", size.second * 1000);
            }
            double const doublings = static_cast<double>(times.size() - 1);
            double const ratio =
                std::pow(times.rbegin()->second / times.begin()->second, 1 / doublings);
            bool const isGood = ratio < limit || times.rbegin()->second < noticeable;
            std::printf(" %9.2f%s\n", ratio, isGood ? "" : " TOO MUCH");
            isLinear = isLinear && isGood;
        }
        return isLinear;
    }

private:
    std::map<std::string, std::map<int, double>> times_;
};

void Register(std::string const& function, void (*call)(std::string const&)) {
    for (std::string const pattern : {"&", "=", "a=&", "%", "a=1&b=2&"}) {
        benchmark::RegisterBenchmark(
            (function + " " + pattern).c_str(),
            [call, pattern](benchmark::State& state) { Measure(state, call, pattern); })
            ->RangeMultiplier(2)
            ->Range(smallest, largest)
            ->MinTime(0.02)
            ->Repetitions(repetitions);
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
    FastestReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.Print() ? 0 : 1;
}
