// The engine that the formatters share.
#ifndef QUILLO_HOST_ATTRIBUTE_SERVICE_HPP
#define QUILLO_HOST_ATTRIBUTE_SERVICE_HPP

#include <string>

#include "host/contract.hpp"
#include "host/request_state.hpp"
#include "host/table.hpp"

namespace QuilloHost {

// The answer to the request `state`, from the objects of `providers`:
//
//     attrs "name mtu", format "%1<tab>%2<newline>", object "interfaces"
//         lo<tab>65536<newline>eth0<tab>1500<newline>
//
// The default value, empty unless set, stands for an object that is unknown or cannot be had, where
// it is the whole answer; and for a value that cannot be had, that of an unknown attribute or of a
// position without an attribute included. A control byte in a value is answered as a blank, so that
// values do not break the lines. May throw std::bad_alloc.
std::string MakeAnswer(RequestState const& state, ProviderList providers);

// Answers the request of `app` on `app->out`. Returns 0; or 1, behind a log entry that names
// `formatter`, when the answer could not be made or written. Throws nothing.
int AnswerRequest(ZOV_AppData* app, char const* formatter, ProviderList providers) noexcept;

}  // namespace QuilloHost

#endif
