// The life of an attribute request: its beginning, its settings, its end. The formatters, which
// answer it, are in formatters.cpp.
#include <new>
#include <optional>
#include <string>

#include "host/contract.hpp"
#include "host/request_state.hpp"

namespace QuilloHost {

namespace {

using Setting = std::optional<std::string> RequestState::*;

// Stores a copy of `text`, or that there is none, and returns the request's state; null, behind a
// log entry, when there is no request. What cannot be copied marks the state, so that nothing is
// answered from half of a request.
RequestState* Store(ZOV_AppData* app, char const* call, Setting setting,
                    char const* text) noexcept {
    RequestState* const state = FindRequest(app);
    if (state == nullptr) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: there is no request", call);
        return nullptr;
    }
    try {
        state->*setting = text == nullptr ? std::nullopt : std::optional<std::string>(text);
    } catch (std::bad_alloc const&) {
        (state->*setting).reset();
        state->isIncomplete = true;
    }
    return state;
}

}  // namespace

}  // namespace QuilloHost

using QuilloHost::RequestState;
using QuilloHost::Store;

int loareq_initialize(ZOV_AppData* app) {
    if (app == nullptr) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: there is no record", __func__);
        return 1;
    }
    try {
        QuilloHost::BeginRequest(*app);
        return 0;
    } catch (std::bad_alloc const&) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: out of memory", __func__);
        return 1;
    }
}

void loareq_free(ZOV_AppData* app) {
    if (app != nullptr)
        QuilloHost::EndRequest(*app);
}

void loareq_set_object(ZOV_AppData* app, char const* object) {
    Store(app, __func__, &RequestState::object, object);
}

void loareq_set_attrs(ZOV_AppData* app, char const* attrs) {
    Store(app, __func__, &RequestState::attrs, attrs);
}

void loareq_set_format(ZOV_AppData* app, char const* format) {
    Store(app, __func__, &RequestState::format, format);
}

void loareq_set_default_val(ZOV_AppData* app, char const* value) {
    Store(app, __func__, &RequestState::defaultValue, value);
}

void loareq_set_fnName(ZOV_AppData* app, char const* fnName) {
    Store(app, __func__, &RequestState::fnName, fnName);
}

void loareq_set_fnArg(ZOV_AppData* app, char const* fnArg) {
    RequestState* const state = Store(app, __func__, &RequestState::fnArg, fnArg);
    if (state != nullptr)
        QuilloHost::ShowFnArg(*app, *state);
}

void loareq_set_context(ZOV_AppData* app, char const* context) {
    Store(app, __func__, &RequestState::context, context);
}
