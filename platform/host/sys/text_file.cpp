#include "host/sys/text_file.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>

#include "host/sys/roots.hpp"

namespace QuilloHost {

Roots& MachineRoots() {
    static Roots roots;
    return roots;
}

std::optional<std::string> ReadText(std::string const& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path.c_str(), "re"),
                                                               std::fclose);
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    char chunk[4096];
    for (std::size_t count = 1; count != 0;) {
        count = std::fread(chunk, 1, sizeof chunk, file.get());
        text.append(chunk, count);
    }
    return std::ferror(file.get()) == 0 ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<std::string> ReadFirstLine(std::string const& path) {
    std::optional<std::string> text = ReadText(path);
    if (text) {
        text->erase(std::min(text->find('\n'), text->size()));
    }
    return text;
}

std::vector<std::string> Words(std::string const& line) {
    std::vector<std::string> words;
    for (std::size_t begin = line.find_first_not_of(" \t"); begin != std::string::npos;) {
        std::size_t const end = line.find_first_of(" \t", begin);
        words.push_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(" \t", end);
    }
    return words;
}

std::vector<std::string> Lines(std::string const& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t const end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

}  // namespace QuilloHost
