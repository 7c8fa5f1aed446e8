#include "host/language_lookup.hpp"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace QuilloHost {

namespace {

struct Range {
    std::string tag;  // lower case
    int quality;      // thousandths
};

bool IsAlphanumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// Lower case, '-' between subtags (some clients write '_'), no blanks at the ends.
std::string Normalized(std::string const& text) {
    std::string tag;
    for (char const c : text) {
        tag += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c == '_' ? '-' : c;
    }
    while (!tag.empty() && IsBlank(tag.back())) {
        tag.pop_back();
    }
    tag.erase(0, std::min(tag.find_first_not_of(" \t"), tag.size()));
    return tag;
}

// Subtags of 1 to 8 letters and digits, '-' between them; or "*".
bool IsTag(std::string const& tag) {
    std::size_t length = 0;
    for (char const c : tag) {
        if (c == '-' ? length == 0 : !IsAlphanumeric(c) || length == 8) {
            return tag == "*";
        }
        length = c == '-' ? 0 : length + 1;
    }
    return length != 0;
}

// "q=0.8" in thousandths: a digit 0 or 1, and up to three behind a point. Below 0: it is none.
int ParseQuality(std::string const& text) {
    std::string const weight = Normalized(text);
    bool const isWeight = weight.size() >= 3 && weight.size() <= 7 &&
                          weight.compare(0, 2, "q=") == 0 && (weight[2] == '0' || weight[2] == '1');
    if (!isWeight || (weight.size() > 3 && weight[3] != '.')) {
        return -1;
    }
    int quality = (weight[2] - '0') * 1000;
    int unit = 100;
    for (std::size_t i = 4; i < weight.size(); ++i, unit /= 10) {
        if (weight[i] < '0' || weight[i] > '9') {
            return -1;
        }
        quality += (weight[i] - '0') * unit;
    }
    return quality <= 1000 ? quality : -1;
}

std::vector<Range> ParseRanges(std::string const& accepted) {
    std::vector<Range> ranges;
    for (std::size_t begin = 0; begin <= accepted.size();) {
        std::size_t const end = std::min(accepted.find(',', begin), accepted.size());
        std::string const piece = accepted.substr(begin, end - begin);
        std::size_t const semicolon = piece.find(';');
        std::string const tag = Normalized(piece.substr(0, semicolon));
        int const quality =
            semicolon == std::string::npos ? 1000 : ParseQuality(piece.substr(semicolon + 1));
        if (IsTag(tag) && quality >= 0) {
            ranges.push_back({tag, quality});
        }
        begin = end + 1;
    }
    std::stable_sort(ranges.begin(), ranges.end(), [](Range const& left, Range const& right) {
        return left.quality > right.quality;
    });
    return ranges;
}

bool Suits(std::string_view range, std::string const& name) {
    return name.compare(0, range.size(), range) == 0 &&
           (name.size() == range.size() || name[range.size()] == '-');
}

// A shortened range must not end in a single letter or digit, which introduces what was cut off.
std::string_view Shortened(std::string_view range) {
    std::size_t dash = range.rfind('-');
    if (dash != std::string_view::npos && dash >= 2 && range[dash - 2] == '-') {
        dash -= 2;
    }
    return range.substr(0, dash == std::string_view::npos ? 0 : dash);
}

std::optional<std::string> Find(std::string_view range, std::vector<std::string> const& names) {
    for (std::string_view tag = range; !tag.empty(); tag = Shortened(tag)) {
        for (std::string const& name : names) {
            if (Suits(tag, name)) {
                return name;
            }
        }
    }
    return std::nullopt;
}

bool IsRefused(std::string const& name, std::vector<Range> const& ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [&](Range const& range) {
        return range.quality == 0 && range.tag != "*" && Suits(range.tag, name);
    });
}

}  // namespace

std::optional<std::string> LookUpLanguage(std::string const& accepted,
                                          std::vector<std::string> const& names,
                                          std::string const& fallback) {
    std::vector<Range> const ranges = ParseRanges(accepted);
    std::vector<std::string> acceptable;
    for (std::string const& name : names) {
        if (!IsRefused(name, ranges)) {
            acceptable.push_back(name);
        }
    }
    for (Range const& range : ranges) {
        if (range.quality != 0) {
            std::optional<std::string> const name =
                Find(range.tag == "*" ? fallback : range.tag, acceptable);
            if (name) {
                return name;
            }
        }
    }
    return std::nullopt;
}

}  // namespace QuilloHost
