// A worker: a process that takes requests that are there as a whole, and answers one after another.
// What the system does not take of an answer at once (limits.hpp) is sent between pages.
#ifndef QUILLO_SERVER_WORKER_HPP
#define QUILLO_SERVER_WORKER_HPP

#include "descriptor_queue.hpp"
#include "site.hpp"
#include "worker_record.hpp"

namespace QuilloServer {

struct WorkerSettings {
    int listener;                     // shared by all workers, and never waits
    DescriptorQueue const& arrivals;  // to the lobby
    DescriptorQueue const& ready;     // from the lobby
    SiteSettings site;
    unsigned long mostRequests;  // 0: any number
    int deadlineMilliseconds;  // the system kills the process (SIGKILL) in a page that takes longer
};

// Runs until the process is told to stop (signals.hpp) or has answered its requests. Before it
// returns, all that it took was answered; and, when it was told to stop, all that was there to
// take. Returns whether it was told to.
bool RunWorker(WorkerSettings const& settings, WorkerRecord& record);

}  // namespace QuilloServer

#endif
