// `ParseUri` against its rules, with outputs that are inputs; and `AppendUriArgs`.
#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

struct Parsed {
    std::string dir;
    std::string page;
    UriArgs args;
    Texts reports;
};

void Store(Parsed& parsed, std::string const& field) {
    std::size_t const equals = field.find('=');
    std::string const name = field.substr(0, equals);
    if (equals == std::string::npos) {
        parsed.reports.push_back("warn: URI arg missing =");
    }
    if (parsed.args.count(name) != 0) {
        parsed.reports.push_back(std::string("warn: Redundant arg ") + name.c_str());
    }
    parsed.args[name] = equals == std::string::npos ? "" : field.substr(equals + 1);
}

// From the back to the front, and not as the library reads it.
Parsed ByTheRules(std::string const& uri) {
    Parsed parsed;
    std::size_t begin = uri.size();
    while (begin > 0 && uri[begin - 1] != '/') {
        --begin;
    }
    parsed.dir = uri.substr(0, begin);
    std::string name = uri.substr(begin);
    std::size_t const question = name.find('?');
    parsed.page = name.substr(0, question);
    if (question == std::string::npos) {
        return parsed;
    }
    std::string field;
    for (char const c : name.substr(question + 1)) {
        if (c == '&') {
            Store(parsed, field);
            field.clear();
        } else {
            field += c;
        }
    }
    Store(parsed, field);
    if (!parsed.reports.empty()) {
        parsed.reports.push_back(std::string("warn: Invalid URI: ") + uri.c_str());
    }
    return parsed;
}

// `ParseUri` of a text that lies where `place` says.
void CheckParsing(std::string const& uri, unsigned place) {
    ResetLibrary();
    std::string dir = place == 1 ? uri : "old";
    std::string page = place == 2 ? uri : "old";
    UriArgs args = {{"old", place == 3 ? uri : "old"}, {place == 4 ? uri : "other", ""}};
    std::string const& parsedText = place == 1   ? dir
                                    : place == 2 ? page
                                    : place == 3 ? args.at("old")
                                    : place == 4 ? args.find(uri)->first
                                                 : uri;
    Parsed const rules = ByTheRules(std::string(parsedText));
    bool const isBad = ParseUri(parsedText, dir, page, args);
    ExpectEqual(dir, rules.dir, "ParseUri: the directory ends with the last '/'");
    ExpectEqual(page, rules.page, "ParseUri: the page ends before the first '?' behind it");
    ExpectEqual(args, rules.args, "ParseUri: the arguments stand behind the '?'");
    ExpectEqual(Reports(), rules.reports, "ParseUri: every problem is reported");
    ExpectEqual(isBad, !rules.reports.empty(), "ParseUri: true says that there was a problem");
}

// The URI with its arguments in order; only for one that was parsed without a problem.
std::string PutTogether(Parsed const& parsed) {
    std::string uri = parsed.dir + parsed.page;
    for (auto const& arg : parsed.args) {
        uri = AppendUriArgs(uri, arg.first + "=" + arg.second);
    }
    return uri;
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    unsigned const place = feed.Below(5);
    std::string const uri = feed.Text();
    std::string const more = feed.Rest();
    CheckParsing(uri, place);
    CheckParsing(uri, 0);

    bool const hasQuestion = uri.find('?') != std::string::npos;
    ExpectEqual(AppendUriArgs(uri, more), uri + (hasQuestion ? "&" : "?") + more,
                "AppendUriArgs: behind a '?', or behind an '&' where there is one");

    Parsed const parsed = ByTheRules(uri);
    if (parsed.reports.empty() && parsed.dir.find('?') == std::string::npos) {
        Parsed const again = ByTheRules(PutTogether(parsed));
        ExpectEqual(again.args, parsed.args, "AppendUriArgs: ParseUri finds what was appended");
        ExpectEqual(again.dir + again.page, parsed.dir + parsed.page,
                    "AppendUriArgs: the address stays");
    }
    ResetLibrary();
}
