// The supervisor: the process that makes the others, a lobby and the workers, and makes them again
// when they end. It serves nothing itself.
#ifndef QUILLO_SERVER_SUPERVISOR_HPP
#define QUILLO_SERVER_SUPERVISOR_HPP

#include "lobby.hpp"
#include "worker.hpp"

namespace QuilloServer {

// Runs until SIGTERM or SIGINT, and ends when every request that had arrived by then is answered.
// What a page does to hold that up ends with the deadline, what a slow reader does some seconds
// later.
void RunSupervisor(int workers, LobbySettings const& lobby, WorkerSettings const& worker);

}  // namespace QuilloServer

#endif
