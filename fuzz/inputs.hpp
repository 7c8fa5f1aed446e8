// Inputs of a target that are there without a fuzzer: its words, texts that nobody here wrote, and
// what is put together of them.
#ifndef QUILLO_FUZZ_INPUTS_HPP
#define QUILLO_FUZZ_INPUTS_HPP

#include <cstddef>
#include <random>
#include <string>
#include <vector>

// The words of a dictionary in libFuzzer's form: a line holds a text between quotes, in which \xNN,
// \" and \\ are one byte; lines that begin with '#' are comments. Throws std::runtime_error when
// the file cannot be read or a line is of another form.
std::vector<std::string> ReadWords(std::string const& path);

// At most `most` of the texts in the folder of test data, evenly spread. Empty when it is absent.
std::vector<std::string> SomeExternalTexts(std::size_t most);

// Inputs without end, the same ones everywhere: random bytes, words, and pieces of seeds.
class InputMaker {
public:
    InputMaker(std::vector<std::string> const& dictionary, std::vector<std::string> const& texts)
        : words(dictionary), seeds(texts), random(20240607) {}

    std::string Next();

private:
    std::size_t Below(std::size_t limit) { return random() % limit; }
    std::string Piece();
    std::string OneOf(std::vector<std::string> const& texts);

    std::vector<std::string> const& words;
    std::vector<std::string> const& seeds;
    std::mt19937 random;
};

#endif
