// The language of a request.
#ifndef QUILLO_SERVER_LANGUAGE_HPP
#define QUILLO_SERVER_LANGUAGE_HPP

#include <string>

#include "incoming.hpp"

namespace QuilloServer {

extern char const languageName[];  // of the argument and of the cookie

// What the request's record says of the language: the translation service's name of the first of
// these that it has a language for: the argument LANGUAGE, the cookie LANGUAGE, Accept-Language, or
// without the last one any language.
// When it has none, Accept-Language as it came, cut behind the last language that fits the record.
std::string PreferredLanguage(Incoming const& incoming);

}  // namespace QuilloServer

#endif
