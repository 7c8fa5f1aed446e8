#include "inputs.hpp"

#include <fstream>
#include <stdexcept>

#include "support/external_texts.hpp"

namespace {

// The two hexadecimal digits at `at`; a negative number when there are none.
int HexByte(std::string const& line, std::size_t at) {
    std::string const digits = line.substr(at, 2);
    bool const isHex = digits.size() == 2 &&
                       digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return isHex ? std::stoi(digits, nullptr, 16) : -1;
}

// The text between the first quote of `line` and the last one. False: there is none.
bool ReadWord(std::string const& line, std::string& word) {
    std::size_t const begin = line.find('"') + 1;
    std::size_t const end = line.rfind('"');
    for (std::size_t at = begin; at < end; ++at) {
        char const next = at + 1 < end ? line[at + 1] : '\0';
        int const byte = HexByte(line, at + 2);
        if (line[at] != '\\') {
            word += line[at];
        } else if (next == '\\' || next == '"') {
            word += next;
            ++at;
        } else if (next == 'x' && byte >= 0 && at + 3 < end) {
            word += static_cast<char>(byte);
            at += 3;
        } else {
            return false;
        }
    }
    return begin != 0 && begin <= end;
}

}  // namespace

std::vector<std::string> ReadWords(std::string const& path) {
    std::ifstream file(path);
    std::vector<std::string> words;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty() || line[0] == '#') {
            continue;
        }
        words.emplace_back();
        if (!ReadWord(line, words.back())) {
            throw std::runtime_error(path + ":" + std::to_string(number) +
                                     ": a line is a comment, or a text between double quotes with "
                                     "\\xNN, \\\" and \\\\ in it");
        }
    }
    if (words.empty()) {
        throw std::runtime_error(path + ": it cannot be read, or holds no word");
    }
    return words;
}

std::vector<std::string> SomeExternalTexts(std::size_t most) {
    struct Source {
        char const* folder;
        char const* ending;
    };
    std::vector<std::string> all;
    for (Source const& source : {Source{"naughty-strings", ".txt"}, Source{"wpt-url", ".json"},
                                 Source{"html5lib", ".test"}, Source{"xss", ".txt"},
                                 Source{"http", ".txt"}, Source{"http", ".md"}}) {
        auto const texts = ExternalTexts(source.folder, source.ending);
        all.insert(all.end(), texts.begin(), texts.end());
    }
    std::vector<std::string> some;
    for (std::size_t i = 0; i < most && i < all.size(); ++i) {
        some.push_back(all.size() <= most ? all[i] : all[i * all.size() / most]);
    }
    return some;
}

std::string InputMaker::OneOf(std::vector<std::string> const& texts) {
    return texts.empty() ? std::string() : texts[Below(texts.size())];
}

std::string InputMaker::Piece() {
    std::size_t const kind = Below(8);
    if (kind < 3) {
        return OneOf(words);
    }
    if (kind == 3) {
        std::string const seed = OneOf(seeds);
        return seed.substr(Below(seed.size() + 1), Below(40));
    }
    std::string const common = std::string("\0\t\n\r \\\x7F\x80\xFF", 9) + "\"%&'+,-./:;<=>?_aZ09";
    return std::string(1, kind < 6 ? common[Below(common.size())] : static_cast<char>(Below(256)));
}

std::string InputMaker::Next() {
    std::string input = Below(3) == 0 ? OneOf(Below(2) == 0 ? words : seeds) : std::string();
    for (std::size_t left = Below(Below(4) == 0 ? 200 : 24); left > 0; --left) {
        input += Piece();
    }
    // What a target does with its texts, it reads from the back.
    for (std::size_t left = Below(3) == 0 ? Below(300) : 0; left > 0; --left) {
        input += static_cast<char>(Below(256));
    }
    return input;
}
