// What the page server reads of the one who asks: the fields of a form, the session's cookie, the
// language.
#include <translation_service.h>
#include <zov_appdata.h>
#include <incoming.hpp>
#include <language.hpp>
#include <session.hpp>

#include <algorithm>

#include "digests.hpp"
#include "feed.hpp"
#include "oracle.hpp"
#include "pieces.hpp"
#include "query.hpp"

using namespace QuilloServer;

namespace {

typedef std::vector<std::string> Texts;

std::string Decoded(std::string const& text) {
    return Quillo::PcntDecode(text.c_str(), nullptr);
}

void CheckForm(std::string const& body) {
    Quillo::UriArgs expected;
    for (std::string const& piece : Pieces(body.c_str(), "&")) {
        std::string field = piece;
        std::replace(field.begin(), field.end(), '+', ' ');
        std::size_t const equals = field.find('=');
        std::string const value = equals == std::string::npos ? "" : field.substr(equals + 1);
        if (!field.empty()) {
            expected[Decoded(field.substr(0, equals))] = Decoded(value);
        }
    }
    ExpectEqual(ReadForm(body), expected, "ReadForm: the last field of each name, decoded");
}

// A cookie is a name and its signature, which only who knows the secret can have made.
void CheckSession(std::string const& name, std::string const& cookie) {
    static Sessions const sessions("secret");
    static Sessions const others("secreu");
    auto const isKnown = [&](Sessions const& all, std::string const& value) {
        return all.IsKnown({{sessionCookieName, value}});
    };
    std::string const begun = sessions.Begin();
    Expect(isKnown(sessions, begun) && !isKnown(others, begun),
           "IsKnown: a session of this server, and of no other", begun);
    Expect(!isKnown(sessions, cookie + begun) || cookie.empty(), "IsKnown: not behind a text");
    Expect(!isKnown(sessions, begun + cookie) || cookie.empty(), "IsKnown: not ahead of a text");
    std::string const signature = KeyedDigest("secret", "session " + name);
    ExpectEqual(isKnown(sessions, name + "." + signature), name.find('.') == std::string::npos,
                "IsKnown: a name that is signed, without a dot in it");
    std::size_t const dot = cookie.find('.');
    bool const isSigned =
        dot != std::string::npos &&
        cookie.substr(dot + 1) == KeyedDigest("secret", "session " + cookie.substr(0, dot));
    ExpectEqual(isKnown(sessions, cookie), isSigned, "IsKnown: nothing else");
    ExpectEqual(sessions.IsKnown({{name, begun}}), name == sessionCookieName,
                "IsKnown: of the cookie of that name");
    ExpectEqual(sessions.Find({{sessionCookieName, begun}}), begun, "Find: a session goes on");
    ExpectEqual(sessions.Token(begun).size(), std::size_t{64}, "Token: 64 digits");
    Expect(sessions.Token(begun) != sessions.Token(begun + "x") &&
               sessions.Token(begun) != others.Token(begun),
           "Token: another one for each session and server");
}

// As much of a list as a record holds: a language that is cut short would be another one.
std::string Fitting(std::string const& list) {
    std::size_t const most = sizeof ZOV_AppData::preferredLang - 1;
    std::string fitting;
    for (std::size_t at = 0; at <= most && at < list.size(); ++at) {
        fitting = list[at] == ',' ? list.substr(0, at) : fitting;
    }
    return list.size() <= most ? list : fitting;
}

void CheckLanguage(Incoming const& incoming) {
    Texts asked = {QueryArgument(incoming.query, "LANGUAGE"), "", incoming.languages};
    if (incoming.cookies.count("LANGUAGE") != 0) {
        asked[1] = incoming.cookies.at("LANGUAGE");
    }
    if (incoming.languages.empty()) {
        asked[2] = "*";
    }
    std::string expected = Fitting(incoming.languages);
    for (auto range = asked.rbegin(); range != asked.rend(); ++range) {
        char const* const found =
            range->empty() ? nullptr : HTTP_Extension_Translation_Lang(range->c_str());
        expected = found != nullptr ? found : expected;
    }
    std::string const preferred = PreferredLanguage(incoming);
    ExpectEqual(preferred, expected, "PreferredLanguage: argument, cookie, Accept-Language");
    Expect(preferred.size() < sizeof ZOV_AppData::preferredLang,
           "PreferredLanguage: fits its place", preferred);
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    unsigned const kind = feed.Below(4);
    std::string const first = feed.Text();
    std::string const rest = feed.Rest();
    CheckForm(first);
    CheckForm(rest + "&" + first + "=" + rest);
    CheckSession(first, rest);
    Incoming incoming;
    incoming.query = kind == 0 ? "LANGUAGE=" + first : first;
    incoming.languages = rest;
    if (kind == 1) {
        incoming.cookies["LANGUAGE"] = first;
    }
    CheckLanguage(incoming);
}
