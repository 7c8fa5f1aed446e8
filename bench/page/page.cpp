// A page, built, written to memory and destroyed, by Quillo and by what a programmer would pick
// instead. Every contender's page is checked first to have the same structure.
//
// "page/ROWS/whole/CONTENDER" is the time of all three; "page/ROWS/phases/CONTENDER" has each one's
// seconds as counters, read from the thread's clock in between.
#include <benchmark/benchmark.h>

#include <ctime>

#include "page/contender.hpp"

using namespace Bench;

namespace {

double CpuSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

void MakeOnce(Contender& contender, PageData const& data) {
    contender.Build(data);
    benchmark::DoNotOptimize(contender.Write().data());
    contender.Destroy();
}

// The first page fills what a contender keeps, and does not count.
void MeasureWhole(benchmark::State& state, Entry const& entry, PageData const& data) {
    std::unique_ptr<Contender> const contender = entry.make();
    MakeOnce(*contender, data);
    for (auto _ : state) {
        MakeOnce(*contender, data);
    }
}

void MeasurePhases(benchmark::State& state, Entry const& entry, PageData const& data) {
    std::unique_ptr<Contender> const contender = entry.make();
    MakeOnce(*contender, data);
    double build = 0;
    double write = 0;
    double destroy = 0;
    for (auto _ : state) {
        double const begin = CpuSeconds();
        contender->Build(data);
        double const built = CpuSeconds();
        benchmark::DoNotOptimize(contender->Write().data());
        double const written = CpuSeconds();
        contender->Destroy();
        double const destroyed = CpuSeconds();
        build += built - begin;
        write += written - built;
        destroy += destroyed - written;
    }
    state.counters["build"] = {build, benchmark::Counter::kAvgIterations};
    state.counters["write"] = {write, benchmark::Counter::kAvgIterations};
    state.counters["destroy"] = {destroy, benchmark::Counter::kAvgIterations};
}

void Register(Entry const& entry, PageData const& data, char const* part,
              void (*measure)(benchmark::State&, Entry const&, PageData const&)) {
    std::string const name =
        "page/" + std::to_string(data.rows.size()) + "/" + part + "/" + entry.name;
    benchmark::RegisterBenchmark(
        name.c_str(), [&entry, &data, measure](benchmark::State& s) { measure(s, entry, data); });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    std::vector<PageData> const pages = {MakePageData(100), MakePageData(1000),
                                         MakePageData(10000)};
    for (PageData const& data : pages) {
        if (!WriteOneStructure(data)) {
            return 1;
        }
        for (Entry const& entry : Entries()) {
            Register(entry, data, "whole", MeasureWhole);
            if (entry.kind == Kind::Tree) {
                Register(entry, data, "phases", MeasurePhases);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
