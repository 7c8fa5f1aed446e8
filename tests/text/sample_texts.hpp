// Texts for tests that compare a function with its rules: every text over an alphabet, and texts
// made at random, the same ones in every run.
#ifndef QUILLO_TESTS_TEXT_SAMPLE_TEXTS_HPP
#define QUILLO_TESTS_TEXT_SAMPLE_TEXTS_HPP

#include <random>
#include <string>
#include <vector>

#include "support/rounds.hpp"

// Every byte but NUL.
inline std::string AllBytes() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

// Every text of at most `longest` bytes of `alphabet`, the empty one first; of fewer bytes where
// there are few rounds.
inline std::vector<std::string> AllTexts(std::string const& alphabet, int longest) {
    std::size_t const bound = static_cast<std::size_t>(Rounds(longest));
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; i < texts.size() && texts[i].size() < bound; ++i) {
        for (char const c : alphabet) {
            texts.push_back(texts[i] + c);
        }
    }
    return texts;
}

// `count` texts of fewer than `bound` bytes of `alphabet`; as many as there are rounds.
inline std::vector<std::string> RandomTexts(std::string const& alphabet, std::size_t bound,
                                            int count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::vector<std::string> texts;
    for (int left = Rounds(count); left > 0; --left) {
        std::string text;
        for (std::size_t size = random() % bound; size > 0; --size) {
            text += alphabet[random() % alphabet.size()];
        }
        texts.push_back(text);
    }
    return texts;
}

#endif
