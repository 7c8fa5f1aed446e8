// The states of the requests in hand.
//
// A state lives on the heap. Word 0 of the record's `loaState` points to it, word 6 to the text
// that get-functions are handed, the other words are zero. A register beside the records knows
// every state by its record's address: a request may be given up without `loareq_free`, and its
// words are then cleared by others, so the record alone could not tell what is to be released.
//
// Like the library this takes no lock: requests are run by one thread at a time.
#ifndef QUILLO_HOST_REQUEST_STATE_HPP
#define QUILLO_HOST_REQUEST_STATE_HPP

#include <cstddef>
#include <optional>
#include <string>

#include "host/contract.hpp"

namespace QuilloHost {

// What the setting calls stored; nothing where none was made, or one with a null pointer.
struct RequestState {
    std::optional<std::string> object;
    std::optional<std::string> attrs;
    std::optional<std::string> format;
    std::optional<std::string> defaultValue;
    std::optional<std::string> fnName;
    std::optional<std::string> fnArg;
    std::optional<std::string> context;
    bool isIncomplete = false;  // a text was lost for want of memory
};

// Makes a fresh state for `app`, in the place of one that was left behind there. Throws
// std::bad_alloc; `app` then has no state.
void BeginRequest(ZOV_AppData& app);

// The state of `app`; null when `app` is null or has none, whatever its words hold.
RequestState* FindRequest(ZOV_AppData const* app) noexcept;

// Releases the state of `app`, if any, and clears its words.
void EndRequest(ZOV_AppData& app) noexcept;

// Points the text pointer of `app` to the get-function's argument in `state`.
void ShowFnArg(ZOV_AppData& app, RequestState& state) noexcept;

// How many states there are.
std::size_t CountRequests() noexcept;

}  // namespace QuilloHost

#endif
