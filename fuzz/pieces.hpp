// A text in pieces, cut at every byte of some delimiters; empty pieces included.
#ifndef QUILLO_FUZZ_PIECES_HPP
#define QUILLO_FUZZ_PIECES_HPP

#include <string>
#include <vector>

inline std::vector<std::string> Pieces(std::string const& text, std::string const& delimiters) {
    std::vector<std::string> pieces = {""};
    for (char const c : text) {
        if (delimiters.find(c) != std::string::npos) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

#endif
