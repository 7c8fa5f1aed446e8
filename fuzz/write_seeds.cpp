// Writes the seeds of a target to files of a folder, named by their numbers.
//
//     fuzz-write-seeds FOLDER WORDS
//
// WORDS is the target's dictionary: each word of it is a seed. So are texts of the test data, where
// it is there: some of them, for a run begins with each seed once.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

#include "inputs.hpp"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostTexts = 4000;

void WriteSeeds(fs::path const& folder, std::vector<std::string> const& seeds,
                std::string const& kind) {
    for (std::size_t i = 0; i < seeds.size(); ++i) {
        std::ofstream file(folder / (kind + std::to_string(i)), std::ios::binary);
        if (!(file << seeds[i]).flush()) {
            throw std::runtime_error(folder.string() + " cannot be written to");
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: fuzz-write-seeds FOLDER WORDS\n", stderr);
        return 2;
    }
    try {
        fs::create_directories(argv[1]);
        WriteSeeds(argv[1], ReadWords(argv[2]), "word-");
        WriteSeeds(argv[1], SomeExternalTexts(mostTexts), "text-");
    } catch (std::exception const& error) {
        std::fprintf(stderr, "fuzz-write-seeds: %s\n", error.what());
        return 1;
    }
    return 0;
}
