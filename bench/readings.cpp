#include "readings.hpp"

#include <cstdio>
#include <cstdlib>
#include <quillo>

#include "quiet_platform.hpp"

using namespace Quillo;

namespace Bench {
namespace {

void Parse(std::string const& text) {
    std::string dir;
    std::string page;
    UriArgs args;
    ParseUri("/dir/page?" + text, dir, page, args);
}

void Read(std::string const& text) {
    ZOV_AppData request = {};
    request.uriArgs = text.c_str();
    GetUriArgs(request, UriArgs());
}

void SplitAtAll(std::string const& text) {
    std::vector<std::string> fields;
    Split(text, "&=%", fields, KeepEmpty);
}

// The text is the answer to the query.
void Query(std::string const& text) {
    answer = text;
    ZOV_AppData request = {};
    std::vector<std::vector<std::string>> rows;
    if (GetObject(request, ObjectType_Sys, "interfaces", {"name", "mtu"}, rows) != 0) {
        std::fprintf(stderr, "no pipe holds the %zu bytes of an answer\n", text.size());
        std::exit(1);
    }
}

// A pattern as it is shown, and as it is.
struct Pattern {
    std::string name;
    std::string text;
};

void Add(std::vector<Reading>& readings, std::string const& function,
         void (*call)(std::string const&), std::vector<Pattern> const& patterns) {
    for (Pattern const& pattern : patterns) {
        readings.push_back(
            {std::string(function).append(", ").append(pattern.name), call, pattern.text});
    }
}

}  // namespace

std::vector<Reading> Readings() {
    std::vector<Pattern> const queries = {
        {"&", "&"}, {"=", "="}, {"a=&", "a=&"}, {"%", "%"}, {"a=1&b=2&", "a=1&b=2&"}};
    std::vector<Pattern> const answers = {
        {"a", "a"}, {"TAB", "\t"}, {"NL", "\n"}, {"a TAB b NL", "a\tb\n"}};
    std::vector<Reading> readings;
    Add(readings, "ParseUri", Parse, queries);
    Add(readings, "GetUriArgs", Read, queries);
    Add(readings, "Split", SplitAtAll, queries);
    Add(readings, "GetObject", Query, answers);
    return readings;
}

std::string Repeated(std::string const& pattern, std::size_t size) {
    std::string text;
    text.reserve(size + pattern.size());
    while (text.size() < size) {
        text += pattern;
    }
    text.resize(size);
    return text;
}

}  // namespace Bench
