// The translation service: phrases of the catalogs, in the language that suits the reader best.
#include <algorithm>
#include <exception>
#include <set>
#include <string>
#include <vector>

#include "host/answer_stream.hpp"
#include "host/catalogs.hpp"
#include "host/contract.hpp"
#include "host/language_lookup.hpp"
#include "host/phrase_context.hpp"
#include "host/request_state.hpp"

namespace QuilloHost {

namespace {

// What "*" stands for, and what a phrase is looked up in when no language suits.
char const defaultCatalog[] = "en-us";

// The language that was asked for last, which is the caller's until the next question.
thread_local std::string languageName;

// How many unknown phrases are remembered, each to be logged once.
constexpr std::size_t mostUnknown = 1000;

std::string CatalogFor(char const* preferred) {
    return LookUpLanguage(preferred, CatalogNames(), defaultCatalog).value_or(defaultCatalog);
}

// How many bytes of a phrase are shown in the log, and remembered. A phrase may be a page's text.
constexpr int mostShown = 200;

std::string Excerpt(std::string const& phrase) {
    return phrase.size() > mostShown ? phrase.substr(0, mostShown) + "..." : phrase;
}

// A phrase that its catalog lacks; a catalog that is not there was logged when it was looked for.
void LogOnce(std::string const& catalog, std::string const& phrase) {
    std::string const shown = Excerpt(phrase);
    static std::set<std::string> known;
    std::vector<std::string> const& names = CatalogNames();
    bool const isThere = std::find(names.begin(), names.end(), catalog) != names.end();
    if (isThere && known.size() < mostUnknown && known.insert(catalog + "\n" + shown).second) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__, "catalog %s has no phrase \"%s\"",
                      catalog.c_str(), shown.c_str());
    }
}

// The translation, or the phrase itself. The empty phrase is none: gettext keeps a catalog's own
// header there.
std::string Translate(std::string const& catalog, std::string const& phrase) {
    if (phrase.empty()) {
        return phrase;
    }
    std::optional<std::string> const translation = FindTranslation(catalog, phrase);
    if (!translation) {
        LogOnce(catalog, phrase);
    }
    return translation.value_or(phrase);
}

void WritePhrase(ZOV_AppData& app, char const* phrase) {
    RequestState const* const state = FindRequest(&app);
    std::string const context = state != nullptr ? state->context.value_or("") : "";
    std::string const text = InContext(context, Translate(CatalogFor(app.preferredLang), phrase));
    WriteAnswer(app.out, text, "phrase \"" + Excerpt(phrase) + "\"");
}

}  // namespace

}  // namespace QuilloHost

using namespace QuilloHost;

char* HTTP_Extension_Translation_Lang(char const* preferred) {
    try {
        std::optional<std::string> const found =
            LookUpLanguage(preferred != nullptr ? preferred : "", CatalogNames(), defaultCatalog);
        languageName = found.value_or("");
    } catch (std::exception const& error) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: %s", __func__, error.what());
        languageName.clear();
    }
    return languageName.empty() ? nullptr : languageName.data();
}

int Trans_LangExists(char const* code) {
    try {
        std::string const range = code != nullptr ? code : "";
        bool const isCode = range.size() == 2 && range != "*";
        return isCode && LookUpLanguage(range, CatalogNames(), defaultCatalog) ? 1 : 0;
    } catch (std::exception const& error) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: %s", __func__, error.what());
        return 0;
    }
}

void HTTP_Translate_Phrase(ZOV_AppData* app, char* arg) {
    if (app == nullptr || app->out == nullptr || arg == nullptr) {
        return;
    }
    try {
        WritePhrase(*app, arg);
    } catch (std::exception const& error) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: \"%.*s\": %s", __func__, mostShown,
                      arg, error.what());
    }
}
