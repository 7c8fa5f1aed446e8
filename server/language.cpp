#include "language.hpp"

#include <translation_service.h>
#include <zov_appdata.h>

#include <vector>

#include "query.hpp"

namespace QuilloServer {
namespace {

constexpr std::size_t mostLanguageBytes = sizeof ZOV_AppData::preferredLang - 1;

std::string CookieLanguage(Incoming const& incoming) {
    auto const cookie = incoming.cookies.find(languageName);
    return cookie != incoming.cookies.end() ? cookie->second : "";
}

// A cut text could name another language, so it ends before a comma.
std::string FittingRecord(std::string const& languages) {
    if (languages.size() <= mostLanguageBytes) {
        return languages;
    }
    std::size_t const comma = languages.rfind(',', mostLanguageBytes);
    return comma != std::string::npos ? languages.substr(0, comma) : "";
}

}  // namespace

char const languageName[] = "LANGUAGE";

std::string PreferredLanguage(Incoming const& incoming) {
    for (std::string const& asked :
         {QueryArgument(incoming.query, languageName), CookieLanguage(incoming), incoming.languages,
          std::string(incoming.languages.empty() ? "*" : "")}) {
        char const* const found =
            asked.empty() ? nullptr : HTTP_Extension_Translation_Lang(asked.c_str());
        if (found != nullptr) {
            return FittingRecord(found);
        }
    }
    return FittingRecord(incoming.languages);
}

}  // namespace QuilloServer
