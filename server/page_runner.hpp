// Runs a page for a request.
#ifndef QUILLO_SERVER_PAGE_RUNNER_HPP
#define QUILLO_SERVER_PAGE_RUNNER_HPP

#include "answer.hpp"
#include "incoming.hpp"
#include "page.hpp"
#include "session.hpp"

namespace QuilloServer {

// The answer that `page` gives. A page that throws is answered with the status 500, and the log
// says what was thrown; so does it say when a page takes `slowMilliseconds` or longer.
Answer RunPage(Page const& page, Incoming const& incoming, Sessions const& sessions,
               int slowMilliseconds);

}  // namespace QuilloServer

#endif
