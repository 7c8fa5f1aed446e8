#include <attribute_service.h>
#include <translation_service.h>

#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

// The word of the request's state that holds the text pointer for a get-function.
constexpr int textWord = 6;

}  // namespace

std::string InvokeLoaGetFunction(ZOV_AppData& app, void (*getFunction)(ZOV_AppData*, char*),
                                 char const* fnName, char const* fnArg, LoaContext context) {
    LoaReq request(app);
    if (request.Init() != 0) {
        ReportDiagnostic(logSpecError, "%s: LoaReq::Init() failed", "InvokeLoaGetFunction");
        return std::string();
    }
    if (fnName != nullptr) {
        loareq_set_fnName(&app, fnName);
    }
    if (fnArg != nullptr) {
        loareq_set_fnArg(&app, fnArg);
    }
    if (context != LoaContext_Unspecified) {
        loareq_set_context(&app, ToCstr(context));
    }
    getFunction(&app, reinterpret_cast<char*>(app.loaState[textWord]));
    return request.Finish();
}

std::string TranslatePhrase(ZOV_AppData& app, char const* phrase, LoaContext context) {
    return InvokeLoaGetFunction(app, HTTP_Translate_Phrase, "HTTP_Translate_Phrase", phrase,
                                context);
}

std::string TranslatePhrase(ZOV_AppData& app, std::string const& phrase, LoaContext context) {
    return TranslatePhrase(app, phrase.c_str(), context);
}

}  // namespace Quillo
