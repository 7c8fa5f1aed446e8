// Texts that are made fit for HTML and for a URI, by Quillo and by the libraries that a programmer
// would pick instead: "WORK/BYTES/PERCENT/CONTENDER". All contenders are checked first to give the
// same text.
#include <cstdint>
#include <cstdio>

#include "text/contender.hpp"

namespace Bench {
namespace {

// `size` bytes, of which about `percent` in a hundred are `special`, the others letters and digits.
// The same call gives the same text.
std::string MakeText(unsigned size, unsigned percent, std::string const& special) {
    std::string const plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    std::uint32_t state = 0;
    auto const random = [&state] {
        state = state * 1664525 + 1013904223;  // Knuth's; the upper bits are the better ones
        return state >> 16;
    };
    std::string text;
    while (text.size() < size) {
        std::string const& bytes = random() % 100 < percent ? special : plain;
        text += bytes[random() % bytes.size()];
    }
    return text;
}

void Copy(std::string const& text, std::string* copy) {
    Take(std::string(text).c_str(), copy);
}

std::string ResultOf(TextContender const& contender, std::string const& text) {
    std::string result;
    contender.run(text, &result);
    return result;
}

// Adds a work on one text. False: a contender gives another text than the first one does.
bool Register(std::string const& work, std::vector<TextContender> const& contenders,
              std::string const& text) {
    std::string const expected = ResultOf(contenders.front(), text);
    for (TextContender const& contender : contenders) {
        if (ResultOf(contender, text) != expected) {
            std::fprintf(stderr, "text: %s: %s gives another text than %s\n", work.c_str(),
                         contender.name, contenders.front().name);
            return false;
        }
    }
    std::vector<TextContender> all = contenders;
    all.push_back({"a copy", Copy});
    for (TextContender const& contender : all) {
        benchmark::RegisterBenchmark((work + "/" + contender.name).c_str(),
                                     [contender, text](benchmark::State& state) {
                                         for (auto _ : state) {
                                             contender.run(text, nullptr);
                                         }
                                     });
    }
    return true;
}

bool RegisterFilters() {
    bool isGood = true;
    for (unsigned const size : {32U, 4096U, 262144U}) {
        for (unsigned const percent : {0U, 2U, 20U}) {
            std::string const work =
                "filter/" + std::to_string(size) + "/" + std::to_string(percent);
            isGood = Register(work, Filters(), MakeText(size, percent, "<>&\"")) && isGood;
        }
    }
    return isGood;
}

bool RegisterPercents() {
    bool isGood = true;
    for (unsigned const size : {100U, 65536U}) {
        for (unsigned const percent : {10U, 50U}) {
            std::string const work = "/" + std::to_string(size) + "/" + std::to_string(percent);
            std::string const text = MakeText(size, percent, " &=%?#+<>\"");
            std::string const encoded = ResultOf(Encoders().front(), text);
            isGood = Register("encode" + work, Encoders(), text) && isGood;
            isGood = Register("decode" + work, Decoders(), encoded) && isGood;
        }
    }
    return isGood;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    bool const areFiltersGood = Bench::RegisterFilters();
    if (!Bench::RegisterPercents() || !areFiltersGood) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
