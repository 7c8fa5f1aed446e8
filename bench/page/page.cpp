// A page, built, written to memory and destroyed, by Quillo and by the libraries that a programmer
// would pick instead. Every contender's page is checked first to have the same structure.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

#include "page/contender.hpp"

using namespace Bench;

namespace {

Entry const entries[] = {{"quillo", MakeQuillo},
                         {"pugixml", MakePugixml},
                         {"tinyxml2", MakeTinyxml2},
                         {"libxml2", MakeLibxml2},
                         {"cgicc", MakeCgicc}};

std::string Page(Entry const& entry, PageData const& data) {
    std::unique_ptr<Contender> const contender = entry.make();
    std::string page;
    contender->Build(data);
    contender->Write(page);
    contender->Destroy();
    return page;
}

// The tags and texts, in their order, without what differs from library to library: line ends, the
// end of a leaf's tag, how quotes in a text are written.
std::string Structure(std::string const& page) {
    std::string plain;
    for (std::size_t i = 0; i < page.size(); ++i) {
        bool const isQuote = page.compare(i, 6, "&quot;") == 0;
        if (isQuote) {
            plain += '"';
            i += 5;
        } else if (page[i] == '>') {
            while (plain.back() == ' ' || plain.back() == '/') {
                plain.pop_back();
            }
            plain += '>';
        } else if (page[i] != '\n') {
            plain += page[i];
        }
    }
    return plain;
}

// Whether all contenders write what the first one writes.
bool AreEqual(PageData const& data) {
    std::string const expected = Structure(Page(entries[0], data));
    for (Entry const& entry : entries) {
        std::string const found = Structure(Page(entry, data));
        if (found != expected) {
            std::size_t const at = static_cast<std::size_t>(
                std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first -
                found.begin());
            std::fprintf(stderr, "page: %s writes another structure, from byte %zu on:\n%s\n%s\n",
                         entry.name, at, found.substr(at, 70).c_str(),
                         expected.substr(at, 70).c_str());
            return false;
        }
    }
    return true;
}

enum Phase { Whole, Build, Write, Destroy };
char const* const phaseNames[] = {"whole", "build", "write", "destroy"};

// The time that counts is that of `phase`; the others are stopped out.
void Measure(benchmark::State& state, Entry const& entry, PageData const& data, Phase phase) {
    std::unique_ptr<Contender> const contender = entry.make();
    std::string page;
    bool isRunning = true;
    auto const count = [&](Phase part) {
        bool const shallRun = phase == Whole || phase == part;
        if (shallRun && !isRunning) {
            state.ResumeTiming();
        } else if (!shallRun && isRunning) {
            state.PauseTiming();
        }
        isRunning = shallRun;
    };
    for (auto _ : state) {
        count(Build);
        contender->Build(data);
        count(Write);
        contender->Write(page);
        count(Destroy);
        contender->Destroy();
        count(phase);
    }
    benchmark::DoNotOptimize(page.data());
}

// What is aimed at: at most so many times the contender's time.
struct Limit {
    char const* work;
    char const* contender;
    double ratio;
};

Limit const limits[] = {{"whole/100", "pugixml", 2.3},  {"whole/100", "tinyxml2", 0.80},
                        {"whole/100", "libxml2", 0.60}, {"whole/100", "cgicc", 0.70},
                        {"write/100", "pugixml", 1.1},  {"write/100", "tinyxml2", 0.45},
                        {"whole/10000", "cgicc", 1.0},  {"whole/10000", "tinyxml2", 1.6}};

// The limit of a work beside a contender; 0 when there is none.
double LimitOf(std::string const& work, std::string const& contender) {
    for (Limit const& limit : limits) {
        if (work == limit.work && contender == limit.contender) {
            return limit.ratio;
        }
    }
    return 0;
}

// The median time of each work, by contender.
class MedianReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const&) override { return true; }

    void ReportRuns(std::vector<Run> const& runs) override {
        for (Run const& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                std::string const& name = run.run_name.function_name;
                std::size_t const slash = name.rfind('/');
                times_[name.substr(0, slash)][name.substr(slash + 1)].push_back(
                    run.cpu_accumulated_time / static_cast<double>(run.iterations));
            }
        }
    }

    void Print() {
        std::printf("microseconds of CPU, medians; and Quillo's time as a multiple of each\n");
        for (auto& [work, contenders] : times_) {
            double const own = Median(contenders["quillo"]);
            std::printf("%-14s quillo %9.1f", work.c_str(), own * 1e6);
            for (Entry const& entry : entries) {
                if (entry.name != std::string("quillo")) {
                    double const other = Median(contenders[entry.name]);
                    double const limit = LimitOf(work, entry.name);
                    std::printf("   %s %9.1f x%5.2f", entry.name, other * 1e6, own / other);
                    if (limit != 0) {
                        std::printf(" (%s%.2f)", own / other > limit ? "ABOVE " : "", limit);
                    }
                }
            }
            std::printf("\n");
        }
    }

private:
    static double Median(std::vector<double>& times) {
        if (times.empty()) {
            return std::nan("");
        }
        auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

    std::map<std::string, std::map<std::string, std::vector<double>>> times_;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    std::map<int, PageData> pages;
    for (int const rows : {100, 1000, 10000}) {
        pages[rows] = MakePageData(rows);
        if (!AreEqual(pages[rows])) {
            return 1;
        }
        for (Phase const phase : {Whole, Build, Write, Destroy}) {
            for (Entry const& entry : entries) {
                std::string const name =
                    std::string(phaseNames[phase]) + "/" + std::to_string(rows) + "/" + entry.name;
                benchmark::RegisterBenchmark(
                    name.c_str(),
                    [&entry, &pages, rows, phase](benchmark::State& state) {
                        Measure(state, entry, pages[rows], phase);
                    })
                    ->MinTime(0.05)
                    ->Repetitions(5);
            }
        }
    }
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.Print();
    return 0;
}
