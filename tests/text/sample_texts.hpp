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

// Two runs of letters, of every two lengths of at most `longest` bytes, with `special` between them
// or between them and behind.
inline std::vector<std::string> TextsOfRuns(std::string const& special, std::size_t longest) {
    std::string const letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::vector<std::string> texts;
    for (std::size_t first = 0; first <= longest; ++first) {
        for (std::size_t second = 0; second <= longest; ++second) {
            texts.push_back(letters.substr(0, first) + special + letters.substr(0, second));
            texts.push_back(texts.back() + special);
        }
    }
    return texts;
}

// Texts of about half a kilobyte and more, less than a page of memory, each of one byte: a letter,
// or one of `special`.
inline std::vector<std::string> LongTexts(std::string const& special) {
    std::vector<std::string> texts;
    for (char const c : "a" + special) {
        for (std::size_t const blocks : {1U, 2U, 7U}) {
            for (std::size_t const length :
                 {blocks * 512 - 1, blocks * 512, blocks * 512 + 1, blocks * 512 + 17}) {
                texts.emplace_back(length, c);
            }
        }
    }
    return texts;
}

#endif
