// Texts for tests that compare a function with its rules: every text over an alphabet, and texts
// made at random, the same ones in every run.
#ifndef QUILLO_TESTS_TEXT_SAMPLE_TEXTS_HPP
#define QUILLO_TESTS_TEXT_SAMPLE_TEXTS_HPP

#include <random>
#include <string>
#include <vector>

// Every byte but NUL.
inline std::string AllBytes() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

// Every text of at most `longest` bytes of `alphabet`, the empty one first.
inline std::vector<std::string> AllTexts(std::string const& alphabet, std::size_t longest) {
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; i < texts.size() && texts[i].size() < longest; ++i) {
        for (char const c : alphabet) {
            texts.push_back(texts[i] + c);
        }
    }
    return texts;
}

// `count` texts of fewer than `bound` bytes of `alphabet`.
inline std::vector<std::string> RandomTexts(std::string const& alphabet, std::size_t bound,
                                            int count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i) {
        std::string text;
        for (std::size_t left = random() % bound; left > 0; --left) {
            text += alphabet[random() % alphabet.size()];
        }
        texts.push_back(text);
    }
    return texts;
}

#endif
