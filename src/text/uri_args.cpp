// The arguments of a request, and its language.
#include <translation_service.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"

char const* g_language = nullptr;

namespace Quillo {
namespace {

char const self[] = "GetUriArgs";
char const defaultLanguage[] = "en-us";

// The longest language name that is used: two letters, '-', two letters.
constexpr std::size_t longestName = 5;

// Holds a language's name that is not the translation service's own text.
char languageBuffer[longestName + 1];

// At most five bytes of `name`.
char* InBuffer(char const* name) {
    std::memset(languageBuffer, 0, sizeof languageBuffer);
    std::memcpy(languageBuffer, name, strnlen(name, longestName));
    return languageBuffer;
}

char* TakeDefault() {
    char* const name = InBuffer(defaultLanguage);
    Log_SpecEntry(logSpecForceInfo, __FILE__, __LINE__,
                  "In %s, preferred lang was NULL, set default = %s", self, name);
    return name;
}

// The first five bytes of a name that is too long, when the service knows its language.
char* Shorten(char const* name) {
    std::string const code(name, 2);
    ReportDiagnostic(logSpecWarn, "Checking for language: [%s], [%s], len=%d", code.c_str(), name,
                     static_cast<int>(std::strlen(name)));
    char* const shortened = InBuffer(Trans_LangExists(code.c_str()) != 0 ? name : defaultLanguage);
    Log_SpecEntry(logSpecForceInfo, __FILE__, __LINE__,
                  "In %s, langName is too long, set default = %s", self, shortened);
    return shortened;
}

// A name of nothing but '-' has no language code in it.
bool HasCode(char const* name) {
    return name[std::strspn(name, "-")] != '\0';
}

// The name of the request's language: the service's own text, or the buffer.
char* ChooseLanguage(char const* preferred) {
    char* name = HTTP_Extension_Translation_Lang(preferred);
    if (name != nullptr && std::strlen(name) > longestName) {
        name = Shorten(name);
    }
    return name != nullptr && HasCode(name) ? name : TakeDefault();
}

// Reads the fields of `text` into `args`.
class ArgumentReader {
public:
    ArgumentReader(char const* text, UriArgs& found)
        : position(text), equals(std::strchr(text, '=')), args(found) {}

    void Read() {
        while (*position != '\0') {
            char const* const ampersand = std::strchr(position, '&');
            ReadField(ampersand);
            position = ampersand != nullptr ? ampersand + 1 : position + std::strlen(position);
        }
    }

private:
    // The field ends at `ampersand`, or with the text when that is null.
    void ReadField(char const* ampersand) {
        FindEquals();
        if (equals != nullptr && (ampersand == nullptr || equals < ampersand)) {
            Store(std::string(position, equals), Value(ampersand));
        } else {
            std::string const field =
                ampersand != nullptr ? std::string(position, ampersand) : std::string(position);
            TraceDiagnostic("** Skipping invalid arg: ", field);
        }
    }

    // The first '=' from here on, null when there is none: looked for anew only when the last one
    // was passed, so that a text is searched once, however many fields it has.
    void FindEquals() {
        if (equals != nullptr && equals < position) {
            equals = std::strchr(position, '=');
        }
    }

    // '+' is replaced after decoding, so an encoded plus becomes a blank as well.
    std::string Value(char const* end) const {
        std::string value = PcntDecode(equals + 1, end);
        std::replace(value.begin(), value.end(), '+', ' ');
        return value;
    }

    void Store(std::string const& name, std::string const& value) {
        TraceDiagnostic("{", name, "} = {", value, "}");
        args[name] = value;
    }

    char const* position;
    char const* equals;
    UriArgs& args;
};

}  // namespace

UriArgs GetUriArgs(ZOV_AppData const& request, UriArgs const& defaults) {
    UriArgs args = defaults;
    ReportDiagnostic(logSpecInfo, "udata.preferredLang = %s , should not empty",
                     request.preferredLang);
    char* const preferred = ChooseLanguage(request.preferredLang);
    ReportDiagnostic(logSpecInfo, "In %s, l_preferredLang = %s , ", self, preferred);
    g_language = std::strtok(preferred, "-");
    TraceDiagnostic("uriArgs = ", reinterpret_cast<std::uintptr_t>(request.uriArgs));
    TraceDiagnostic("LANGUAGE = ", g_language);
    if (request.uriArgs != nullptr) {
        TraceDiagnostic("uriArgs = {", request.uriArgs, "}");
        ArgumentReader(request.uriArgs, args).Read();
    }
    if (args.count("LANGUAGE") == 0) {
        args["LANGUAGE"] = g_language;
    }
    return args;
}

}  // namespace Quillo
