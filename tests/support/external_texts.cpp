#include "support/external_texts.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string Contents(std::filesystem::path const& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

void AppendUtf8(unsigned long code, std::string& text) {
    int const following = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    unsigned long const marks[] = {0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(marks[following] | code >> (6 * following));
    for (int i = following - 1; i >= 0; --i) {
        text += static_cast<char>(0x80 | (code >> (6 * i) & 0x3F));
    }
}

// Reads one string of a document, from behind its opening quote to its closing one.
class StringReader {
public:
    StringReader(std::string const& document, std::size_t start) : json(document), at(start) {}

    std::string Read() {
        std::string text;
        while (at < json.size() && json[at] != '"') {
            if (json[at] == '\\') {
                ReadEscape(text);
            } else {
                text += json[at++];
            }
        }
        return text;
    }

    std::size_t end() const { return at + 1; }

private:
    void ReadEscape(std::string& text) {
        char const kind = at + 1 < json.size() ? json[at + 1] : '\\';
        at += 2;
        std::string const letters = "bfnrt";
        std::size_t const letter = letters.find(kind);
        if (kind == 'u') {
            AppendUtf8(ReadCodePoint(), text);
        } else {
            text += letter != std::string::npos ? "\b\f\n\r\t"[letter] : kind;
        }
    }

    // A pair of surrogates is one code point; half a pair is taken as it stands.
    unsigned long ReadCodePoint() {
        unsigned long const high = ReadUnit();
        if (high / 0x400 != 0xD800 / 0x400 || json.compare(at, 2, "\\u") != 0) {
            return high;
        }
        std::size_t const before = at;
        at += 2;
        unsigned long const low = ReadUnit();
        if (low / 0x400 != 0xDC00 / 0x400) {
            at = before;
            return high;
        }
        return 0x10000 + (high - 0xD800) * 0x400 + (low - 0xDC00);
    }

    unsigned long ReadUnit() {
        unsigned long const unit = std::stoul(json.substr(at, 4), nullptr, 16);
        at += 4;
        return unit;
    }

    std::string const& json;
    std::size_t at;
};

std::vector<std::string> Lines(std::string const& contents) {
    std::vector<std::string> lines;
    std::istringstream stream(contents);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

std::vector<std::string> JsonStrings(std::string const& json) {
    std::vector<std::string> strings;
    std::size_t quote = json.find('"');
    while (quote != std::string::npos) {
        StringReader reader(json, quote + 1);
        strings.push_back(reader.Read());
        quote = json.find('"', reader.end());
    }
    return strings;
}

std::vector<std::string> ExternalTexts(std::string const& folder, std::string const& ending) {
    std::vector<std::string> texts;
    std::error_code absent;
    for (auto const& file : std::filesystem::directory_iterator(
             std::filesystem::path(QUILLO_TEST_DATA) / folder, absent)) {
        std::string const kind = file.path().extension().string();
        if (kind != ending) {
            continue;
        }
        std::string const contents = Contents(file.path());
        std::vector<std::string> const found =
            kind == ".txt" ? Lines(contents) : JsonStrings(contents);
        texts.insert(texts.end(), found.begin(), found.end());
    }
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return texts;
}
