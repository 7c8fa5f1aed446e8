// The host's choice of a language against a second reading of its rules.
#include <algorithm>

#include "feed.hpp"
#include "host/language_lookup.hpp"
#include "oracle.hpp"

namespace {

typedef std::vector<std::string> Texts;

Texts Pieces(std::string const& text, char delimiter) {
    Texts pieces = {""};
    for (char const c : text) {
        if (c == delimiter) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

std::string Tidy(std::string text) {
    auto const isKept = [](char c) { return c != ' ' && c != '\t'; };
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), isKept));
    text.erase(std::find_if(text.rbegin(), text.rend(), isKept).base(), text.end());
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c == '_' ? '-' : c;
    }
    return text;
}

bool IsRange(std::string const& text) {
    Texts const subtags = Pieces(text, '-');
    return text == "*" ||
           std::all_of(subtags.begin(), subtags.end(), [](std::string const& subtag) {
               return !subtag.empty() && subtag.size() <= 8 &&
                      subtag.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789") ==
                          std::string::npos;
           });
}

// In thousandths; below 0: the text is no quality. q=0, q=0.5, q=1.000 (RFC 9110, 12.4.2).
int Quality(std::string const& text) {
    if (text.compare(0, 2, "q=") != 0) {
        return -1;
    }
    std::string number = text.substr(2);
    if (number.size() == 1) {
        number += ".";
    }
    if (number.size() < 2 || number.size() > 5 || number[1] != '.') {
        return -1;
    }
    number.erase(1, 1);
    number.resize(4, '0');
    bool const isNumber = number.find_first_not_of("0123456789") == std::string::npos;
    int const quality = isNumber ? std::stoi(number) : -1;
    return quality <= 1000 ? quality : -1;
}

bool Suits(std::string const& range, std::string const& name) {
    return (name + "-").compare(0, range.size() + 1, range + "-") == 0;
}

struct Range {
    std::string tag;
    int quality;
};

// The acceptable names among `names`, and the ranges that are understood, the wanted ones first.
std::vector<Range> Ranges(std::string const& accepted) {
    std::vector<Range> ranges;
    for (std::string const& piece : Pieces(accepted, ',')) {
        std::size_t const semicolon = piece.find(';');
        int const quality =
            semicolon == std::string::npos ? 1000 : Quality(Tidy(piece.substr(semicolon + 1)));
        std::string const tag = Tidy(piece.substr(0, semicolon));
        if (quality >= 0 && IsRange(tag)) {
            auto const place = std::find_if(ranges.begin(), ranges.end(), [&](Range const& other) {
                return other.quality < quality;
            });
            ranges.insert(place, {tag, quality});
        }
    }
    return ranges;
}

// RFC 4647, 3.4: the range, then the range without its last subtag, and without a single letter or
// digit that would then be the last.
std::optional<std::string> Find(std::string const& range, Texts const& names) {
    Texts subtags = Pieces(range, '-');
    while (!subtags.empty()) {
        std::string tag;
        for (std::string const& subtag : subtags) {
            tag += (tag.empty() ? "" : "-") + subtag;
        }
        for (std::string const& name : names) {
            if (Suits(tag, name)) {
                return name;
            }
        }
        subtags.pop_back();
        if (subtags.size() > 1 && subtags.back().size() == 1) {
            subtags.pop_back();
        }
    }
    return std::nullopt;
}

std::optional<std::string> ByTheRules(std::string const& accepted, Texts names,
                                      std::string const& fallback) {
    std::vector<Range> const ranges = Ranges(accepted);
    for (Range const& range : ranges) {
        if (range.quality == 0 && range.tag != "*") {
            names.erase(
                std::remove_if(names.begin(), names.end(),
                               [&](std::string const& name) { return Suits(range.tag, name); }),
                names.end());
        }
    }
    for (Range const& range : ranges) {
        auto const found = range.quality == 0
                               ? std::nullopt
                               : Find(range.tag == "*" ? fallback : range.tag, names);
        if (found) {
            return found;
        }
    }
    return std::nullopt;
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    static Texts const all = {"ar-eg", "de-de", "en-us", "zh-hans-cn", "zh-a-cn"};
    unsigned const chosen = feed.Byte();
    Texts names;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if ((chosen >> i & 1) == 0) {
            names.push_back(all[i]);
        }
    }
    std::string const accepted = feed.Rest();
    std::string const fallback = (chosen & 128) == 0 ? "en-us" : "fr-fr";
    auto const found = QuilloHost::LookUpLanguage(accepted, names, fallback);
    ExpectEqual(found, ByTheRules(accepted, names, fallback), "LookUpLanguage: by the rules");
    Expect(!found || std::find(names.begin(), names.end(), *found) != names.end(),
           "LookUpLanguage: one of the names, or none");
}
