// URIs as page handlers see them: DIRECTORY/PAGE?NAME=VALUE&NAME=VALUE
#include <algorithm>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

// The position of `c` in `text` from `start` on, or the text's length.
std::size_t Find(std::string const& text, char c, std::size_t start) {
    return std::min(text.find(c, start), text.size());
}

// Reads the arguments of `uri` that follow the '?' at `question`. False: one of them is wrong.
class ArgumentReader {
public:
    ArgumentReader(std::string const& text, UriArgs& found)
        : uri(text), args(found), nextEquals(0), isBad(false) {}

    bool ReadBehind(std::size_t question) {
        std::size_t separator = question;
        while (separator != uri.size()) {
            std::size_t const start = separator + 1;
            separator = Find(uri, '&', start);
            ReadField(start, separator);
        }
        return !isBad;
    }

private:
    void ReadField(std::size_t start, std::size_t end) {
        std::size_t const equals = EqualsFrom(start);
        if (equals < end) {
            Store(uri.substr(start, equals - start), uri.substr(equals + 1, end - equals - 1));
        } else {
            ReportDiagnostic(logSpecWarn, "URI arg missing =");
            isBad = true;
            Store(uri.substr(start, end - start), "");
        }
    }

    // The first '=' from `start` on. What was found for one field often serves the next ones too,
    // so that a text is searched once, however many fields it has.
    std::size_t EqualsFrom(std::size_t start) {
        if (nextEquals < start) {
            nextEquals = Find(uri, '=', start);
        }
        return nextEquals;
    }

    // The last of several values holds.
    void Store(std::string const& name, std::string const& value) {
        if (args.count(name) != 0) {
            ReportDiagnostic(logSpecWarn, "Redundant arg %s", name.c_str());
            isBad = true;
        }
        args[name] = value;
    }

    std::string const& uri;
    UriArgs& args;
    std::size_t nextEquals;
    bool isBad;
};

}  // namespace

bool ParseUri(std::string const& uri, std::string& dir, std::string& page, UriArgs& args) {
    // The last '/' of the whole text, its query included.
    std::size_t const start = uri.rfind('/') + 1;
    std::size_t const question = Find(uri, '?', start);
    UriArgs foundArgs;
    bool const isGood = ArgumentReader(uri, foundArgs).ReadBehind(question);
    if (!isGood) {
        ReportDiagnostic(logSpecWarn, "Invalid URI: %s", uri.c_str());
    }
    // The outputs last: the URI may be one of them.
    std::string foundDir = uri.substr(0, start);
    std::string foundPage = uri.substr(start, question - start);
    dir.swap(foundDir);
    page.swap(foundPage);
    args.swap(foundArgs);
    return !isGood;
}

std::string AppendUriArgs(std::string const& uri, std::string const& args) {
    char const* const separator = uri.find('?') == std::string::npos ? "?" : "&";
    return Joined({uri, separator, args});
}

}  // namespace Quillo
