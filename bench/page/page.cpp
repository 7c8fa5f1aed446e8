// A page, built, written to memory and destroyed, by Quillo and by the libraries that a programmer
// would pick instead. Every contender's page is checked first to have the same structure.
#include <benchmark/benchmark.h>

#include <algorithm>
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

void Measure(benchmark::State& state, Entry const& entry, PageData const& data, Phase phase) {
    std::unique_ptr<Contender> const contender = entry.make();
    std::string page;
    bool const isWhole = phase == Whole;
    for (auto _ : state) {
        if (!isWhole && phase != Build) {
            state.PauseTiming();
        }
        contender->Build(data);
        if (phase == Write) {
            state.ResumeTiming();
        } else if (phase == Build) {
            state.PauseTiming();
        }
        contender->Write(page);
        if (phase == Write) {
            state.PauseTiming();
        } else if (phase == Destroy) {
            state.ResumeTiming();
        }
        contender->Destroy();
        if (phase == Build || phase == Write) {
            state.ResumeTiming();
        }
    }
    benchmark::DoNotOptimize(page.data());
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::map<int, PageData> pages;
    for (int const rows : {100, 1000, 10000}) {
        pages[rows] = MakePageData(rows);
        if (!AreEqual(pages[rows])) {
            return 1;
        }
        for (Phase const phase : {Whole, Build, Write, Destroy}) {
            for (Entry const& entry : entries) {
                std::string const name = std::string(phaseNames[phase]) + "/" +
                                         std::to_string(rows) + "/" + entry.name;
                benchmark::RegisterBenchmark(name.c_str(), Measure, entry, pages[rows], phase);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
