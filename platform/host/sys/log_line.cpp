#include "host/sys/log_line.hpp"

#include <algorithm>
#include <cstring>

namespace QuilloHost {

namespace {

constexpr std::size_t mostTextBytes = 1000;
constexpr std::size_t mostWordBytes = 200;

int Rank(std::string_view level) {
    return level == "info" ? 0 : level == "warning" ? 1 : 2;
}

bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

char Lower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

std::string Lowered(std::string_view text) {
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(), Lower);
    return lowered;
}

bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::string Cut(std::string_view text) {
    if (text.size() <= mostTextBytes) {
        return std::string(text);
    }
    std::size_t end = mostTextBytes;
    while (end > mostTextBytes - 3 && IsContinuation(text[end])) {
        --end;
    }
    return std::string(text.substr(0, end)) + "\u2026";
}

// Takes what stands before `mark`, and the mark, off the front of `rest`; nothing when that is not
// there, or too long for a word.
std::string_view TakeWord(std::string_view& rest, std::string_view mark) {
    std::size_t const end = rest.find(mark);  // the greatest number of all when it is not there
    if (end > mostWordBytes) {
        return {};
    }
    std::string_view const word = rest.substr(0, end);
    rest.remove_prefix(end + mark.size());
    return word;
}

// "2024-05-01T12:30:05", and a fraction and a zone behind it.
bool IsTime(std::string_view word) {
    static constexpr std::string_view form = "0000-00-00T00:00:00";
    return word.size() >= form.size() && word.size() < 2 * form.size() &&
           std::equal(form.begin(), form.end(), word.begin(), [](char wanted, char byte) {
               return wanted == '0' ? IsDigit(byte) : byte == wanted;
           });
}

// "[4711]"
bool IsProcess(std::string_view word) {
    return word.size() > 2 && word.front() == '[' && word.back() == ']' &&
           std::all_of(word.begin() + 1, word.end() - 1, IsDigit);
}

bool IsLevel(std::string_view word) {
    return word == "error" || word == "warning" || word == "info";
}

}  // namespace

LogLine ParseLogLine(std::string_view line) {
    std::string_view rest = line;
    std::string_view const time = TakeWord(rest, " ");
    std::string_view const process = TakeWord(rest, " ");
    std::string_view const level = TakeWord(rest, " ");
    std::string_view const source = TakeWord(rest, ": ");
    if (!IsTime(time) || !IsProcess(process) || !IsLevel(level) || source.empty()) {
        return {"", "", "other", "", Cut(line)};
    }
    return {std::string(time), std::string(process.substr(1, process.size() - 2)),
            std::string(level), std::string(source), Cut(rest)};
}

bool IsLetThrough(std::string_view level, std::string_view lowest) {
    return !IsLevel(lowest) || Rank(level) >= Rank(lowest);
}

// Both may be long, and made to be almost alike: std::search would take as long as their product.
bool HoldsText(std::string_view line, std::string_view sought) {
    if (sought.size() > line.size()) {
        return false;
    }
    std::string const text = Lowered(line);
    std::string const part = Lowered(sought);
    return memmem(text.data(), text.size(), part.data(), part.size()) != nullptr;
}

}  // namespace QuilloHost
