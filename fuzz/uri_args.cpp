// `GetUriArgs` against its rules: the arguments, the language, and everything that is said on the
// way.
#include <algorithm>
#include <cstring>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

// What the request and the translation service say.
struct Case {
    std::string preferred;
    std::optional<std::string> answer;
    bool isKnown = false;
    std::optional<std::string> text;
    UriArgs defaults;
};

Case Read(Feed& feed) {
    Case read;
    bool const hasAnswer = !feed.Bit();
    bool const hasText = !feed.Bit();
    unsigned const defaults = feed.Below(4);
    read.isKnown = feed.Bit();
    read.preferred = feed.Text().substr(0, sizeof ZOV_AppData::preferredLang - 1).c_str();
    std::string const answer = feed.Text().c_str();
    read.answer = hasAnswer ? std::optional<std::string>(answer) : std::nullopt;
    for (unsigned i = 0; i < defaults; ++i) {
        std::string const name = i == 3 ? "LANGUAGE" : feed.Text();
        read.defaults[name] = feed.Text();
    }
    std::string const text = feed.Rest().c_str();
    read.text = hasText ? std::optional<std::string>(text) : std::nullopt;
    return read;
}

// The process-wide effects, and what is reported.
struct Rules {
    UriArgs args;
    std::string language;
    Texts reports;
};

void ChooseLanguage(Case const& request, Rules& rules) {
    std::string name = request.answer.value_or("");
    if (name.size() > 5) {
        rules.reports.push_back("warn: Checking for language: [" + name.substr(0, 2) + "], [" +
                                name + "], len=" + std::to_string(name.size()));
        name = request.isKnown ? name.substr(0, 5) : "en-us";
        rules.reports.push_back("force: In GetUriArgs, langName is too long, set default = " +
                                name);
    }
    if (name.find_first_not_of('-') == std::string::npos) {
        name = "en-us";
        rules.reports.push_back("force: In GetUriArgs, preferred lang was NULL, set default = " +
                                name);
    }
    rules.reports.push_back("info: In GetUriArgs, l_preferredLang = " + name + " , ");
    std::size_t const begin = name.find_first_not_of('-');
    rules.language = name.substr(begin, name.find('-', begin) - begin);
}

// An escape that is cut by the field's end is read to its own end.
void TakeField(std::string const& text, std::size_t begin, std::size_t end, Rules& rules) {
    std::string const field = text.substr(begin, end - begin);
    std::size_t const equals = field.find('=');
    if (equals == std::string::npos) {
        rules.reports.push_back("** Skipping invalid arg: " + field);
        return;
    }
    std::string value = PcntDecode(text.c_str() + begin + equals + 1, text.c_str() + end);
    std::replace(value.begin(), value.end(), '+', ' ');
    std::string const name = field.substr(0, equals);
    rules.reports.push_back("{" + name + "} = {" + value + "}");
    rules.args[name] = value;
}

void TakeText(std::string const& text, Rules& rules) {
    rules.reports.push_back("uriArgs = {" + text + "}");
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t const end = std::min(text.find('&', begin), text.size());
        TakeField(text, begin, end, rules);
        begin = end + 1;
    }
}

Rules ByTheRules(Case const& request, std::string const& address) {
    Rules rules;
    rules.args = request.defaults;
    rules.reports.push_back("info: udata.preferredLang = " + request.preferred +
                            " , should not empty");
    ChooseLanguage(request, rules);
    rules.reports.push_back("uriArgs = " + address);
    rules.reports.push_back("LANGUAGE = " + rules.language);
    if (request.text) {
        TakeText(*request.text, rules);
    }
    rules.args.emplace("LANGUAGE", rules.language);
    return rules;
}

// The reports, without the places that traces begin with.
Texts WithoutPlaces(Texts reports) {
    std::string const place = "info: At src/text/uri_args.cpp:";
    for (std::string& report : reports) {
        if (report.compare(0, place.size(), place) == 0) {
            report.erase(0, report.find(": ", place.size()) + 2);
        }
    }
    return reports;
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    Case const request = Read(feed);
    Platform().languageAnswer = request.answer;
    Platform().knownLanguages[request.answer.value_or("").substr(0, 2)] = true;
    if (!request.isKnown) {
        Platform().knownLanguages.clear();
    }
    ZOV_AppData app = {};
    std::strcpy(app.preferredLang, request.preferred.c_str());
    TightText const text(request.text.value_or(""));
    app.uriArgs = request.text ? text.c_str() : nullptr;
    Rules const rules =
        ByTheRules(request, std::to_string(reinterpret_cast<std::uintptr_t>(app.uriArgs)));

    UriArgs const args = GetUriArgs(app, request.defaults);
    ExpectEqual(std::string(g_language), rules.language, "GetUriArgs: the language is chosen");
    ExpectEqual(args, rules.args, "GetUriArgs: the arguments over the defaults");
    ExpectEqual(WithoutPlaces(Reports()), rules.reports, "GetUriArgs: all of it is traced");
    ResetLibrary();
}
