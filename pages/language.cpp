// The language page: the reader's choice, kept in the cookie LANGUAGE by which the server chooses
// the language of every other page.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "frame.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

char const argumentName[] = "LANGUAGE";

struct Language {
    char const* code;
    char const* name;  // in the language itself
};

Language const languages[] = {{"en", "English"}, {"de", "Deutsch"}, {"ar", "العربية"}};

// The argument that asks for the language.
std::string ArgumentFor(Language const& language) {
    return std::string(argumentName) + "=" + language.code;
}

// The code of the language asked for; empty when that is none of ours. The request's arguments
// always have a language, so the query is looked at.
std::string AskedLanguage(Request const& request) {
    std::vector<std::string> arguments;
    Split(request.app.uriArgs, "&", arguments, SkipEmpty);
    std::string asked;
    for (std::string const& argument : arguments) {
        for (Language const& language : languages) {
            if (argument == ArgumentFor(language)) {
                asked = language.code;
            }
        }
    }
    return asked;
}

Element MakeChoice(Language const& language, std::string const& current) {
    A link;
    link.SetAttr("href", SafeUrl(AppendUriArgs("/language", ArgumentFor(language))));
    link.SetAttr("hreflang", language.code).SetAttr("lang", language.code);
    if (current == language.code) {
        link.SetAttr("aria-current", "true");
    }
    return Li() << (link << std::string(language.name));
}

void WriteLanguage(Request& request, std::ostream& out) {
    std::string const asked = AskedLanguage(request);
    if (!asked.empty()) {
        request.newCookies[argumentName] = asked;
    }
    Ul list;
    list.SetAttr("class", "choices");
    for (Language const& language : languages) {
        list << MakeChoice(language, Cstr(g_language));
    }
    Group content;
    content << (P() << Phrase(request, "Choose the language of these pages.")) << list;
    WriteFramed(request, out, "language", content);
}

QuilloServer::Page const page("language", "Language", 7, WriteLanguage);

}  // namespace
}  // namespace Pages
