#include "host/request_state.hpp"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>

namespace QuilloHost {

namespace {

constexpr std::size_t stateWord = 0;
constexpr std::size_t textWord = 6;

using Register = std::map<ZOV_AppData const*, std::unique_ptr<RequestState>>;

Register& Requests() noexcept {
    static Register requests;
    return requests;
}

}  // namespace

void BeginRequest(ZOV_AppData& app) {
    EndRequest(app);
    auto state = std::make_unique<RequestState>();
    app.loaState[stateWord] = reinterpret_cast<std::uintptr_t>(state.get());
    try {
        Requests()[&app] = std::move(state);
    } catch (...) {
        app.loaState[stateWord] = 0;
        throw;
    }
}

RequestState* FindRequest(ZOV_AppData const* app) noexcept {
    auto const found = Requests().find(app);
    if (found == Requests().end())
        return nullptr;
    RequestState* const state = found->second.get();
    return app->loaState[stateWord] == reinterpret_cast<std::uintptr_t>(state) ? state : nullptr;
}

void EndRequest(ZOV_AppData& app) noexcept {
    Requests().erase(&app);
    std::fill(std::begin(app.loaState), std::end(app.loaState), std::uintptr_t{0});
}

void ShowFnArg(ZOV_AppData& app, RequestState& state) noexcept {
    char* const text = state.fnArg ? state.fnArg->data() : nullptr;
    app.loaState[textWord] = reinterpret_cast<std::uintptr_t>(text);
}

std::size_t CountRequests() noexcept {
    return Requests().size();
}

}  // namespace QuilloHost
