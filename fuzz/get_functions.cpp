// `InvokeLoaGetFunction` and `TranslatePhrase` with get-functions that write anything, throw, or
// ask for another phrase themselves.
#include <stdexcept>

#include "feed.hpp"
#include "request.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

// What the get-function does.
struct Behaviour {
    std::string text;
    bool isInPieces = false;
    bool throws = false;
    bool asks = false;
};

Behaviour behaviour;

// What it was handed.
std::optional<std::string> handed;

void GetFunction(ZOV_AppData* app, char* text) {
    Platform().trace.push_back("HTTP_get_function");
    handed = text != nullptr ? std::optional<std::string>(text) : std::nullopt;
    if (behaviour.asks) {
        WatchedRequest inner;
        Platform().translation = "inner";
        ExpectEqual(TranslatePhrase(inner.app, "phrase", LoaContext_Js), std::string("inner"),
                    "a get-function may ask for a phrase itself");
        inner.CheckIsLeftAlone();
    }
    for (std::size_t at = 0; at < behaviour.text.size();) {
        std::size_t const size = behaviour.isInPieces ? 1 : behaviour.text.size();
        std::fwrite(behaviour.text.data() + at, 1, size, app->out);
        if (behaviour.isInPieces) {
            std::fflush(app->out);
        }
        at += size;
    }
    if (behaviour.throws) {
        throw std::runtime_error("a get-function's own");
    }
}

struct Call {
    std::optional<std::string> fnName;
    std::optional<std::string> fnArg;
    int context = 0;
};

char const* TextOf(std::optional<std::string> const& text) {
    return text ? text->c_str() : nullptr;
}

Texts ExpectedCalls(Call const& call) {
    Texts calls = {"loareq_initialize"};
    if (call.fnName) {
        calls.push_back("loareq_set_fnName " + *call.fnName);
    }
    if (call.fnArg) {
        calls.push_back("loareq_set_fnArg " + *call.fnArg);
    }
    static char const* const contexts[] = {"none", "html", "js", "php", "both"};
    if (call.context != 0) {
        bool const isOne = call.context > 0 && call.context < 6;
        calls.push_back(std::string("loareq_set_context ") +
                        (isOne ? contexts[call.context - 1] : "unknown-LoaContext"));
    }
    calls.push_back("HTTP_get_function");
    return calls;
}

void CheckCall(Call const& call) {
    WatchedRequest request;
    std::string answer;
    bool hasThrown = false;
    try {
        answer = InvokeLoaGetFunction(request.app, GetFunction, TextOf(call.fnName),
                                      TextOf(call.fnArg), static_cast<LoaContext>(call.context));
    } catch (std::runtime_error const&) {
        hasThrown = true;
    }
    request.CheckIsLeftAlone();
    ExpectEqual(hasThrown, behaviour.throws, "what a get-function throws passes");
    ExpectEqual(handed, call.fnArg, "a get-function is handed the argument");
    if (!behaviour.throws) {
        ExpectEqual(answer, std::string(behaviour.text.c_str()), "what a get-function writes");
    }
    if (!behaviour.asks) {
        Texts calls = ExpectedCalls(call);
        if (!behaviour.throws) {
            calls.push_back("loareq_free");
        }
        ExpectEqual(ServiceCalls(), calls, "the service is told what is asked");
    }
    ExpectEqual(Reports(), Texts(), "get-functions: nothing is reported");
}

// A request that cannot be begun calls no get-function.
void CheckFailure(Call const& call) {
    ResetLibrary();
    Platform().initializeResult = 1;
    WatchedRequest request;
    ExpectEqual(InvokeLoaGetFunction(request.app, GetFunction, TextOf(call.fnName),
                                     TextOf(call.fnArg), static_cast<LoaContext>(call.context)),
                std::string(), "a request that fails has no answer");
    request.CheckIsLeftAlone();
    ExpectEqual(ServiceCalls(), Texts{"loareq_initialize"}, "a request that fails asks nothing");
    ExpectEqual(Reports(),
                Texts{"error: Init: loa_initialize_loareq() failed",
                      "error: InvokeLoaGetFunction: LoaReq::Init() failed"},
                "a request that fails is reported");
}

void CheckPhrase(std::string const& phrase, LoaContext context, std::string const& translation) {
    ResetLibrary();
    Platform().translation = translation;
    WatchedRequest request;
    std::string const expected = translation.c_str();
    ExpectEqual(TranslatePhrase(request.app, phrase, context), expected,
                "TranslatePhrase: what the service writes");
    ExpectEqual(TranslatePhrase(request.app, TightText(phrase).c_str(), context), expected,
                "TranslatePhrase: a string ends at its first NUL");
    request.CheckIsLeftAlone();
    std::string const told = std::string("HTTP_Translate_Phrase ") + phrase.c_str();
    Texts calls;
    for (std::string const& call : ServiceCalls()) {
        if (call.compare(0, 5, "HTTP_") == 0) {
            calls.push_back(call);
        }
    }
    ExpectEqual(calls, Texts{told, told}, "TranslatePhrase: the service is handed the phrase");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    unsigned const flags = feed.Byte();
    Call call;
    call.context = feed.Bit() ? feed.Number() : static_cast<int>(feed.Below(6));
    std::string const first = feed.Text().c_str();
    std::string const second = feed.Text();
    call.fnName = (flags & 1) == 0 ? std::optional<std::string>(first) : std::nullopt;
    call.fnArg = (flags & 2) == 0 ? std::optional<std::string>(second.c_str()) : std::nullopt;
    behaviour = {feed.Rest(), (flags & 12) == 12, (flags & 48) == 48, (flags & 192) == 192};
    CheckCall(call);
    CheckFailure(call);
    CheckPhrase(second, static_cast<LoaContext>(call.context), behaviour.text);
    ResetLibrary();
}
