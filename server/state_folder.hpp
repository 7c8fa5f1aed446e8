// The folder that the configuration store keeps its values in.
#ifndef QUILLO_SERVER_STATE_FOLDER_HPP
#define QUILLO_SERVER_STATE_FOLDER_HPP

#include <string>

namespace QuilloServer {

// /var/lib/quillo for root, else $XDG_STATE_HOME/quillo, else ~/.local/state/quillo.
std::string DefaultStateFolder();

// Has the store keep its values in `folder`, and makes it if it is not there. Throws
// std::runtime_error unless files can be made in it.
void PrepareStateFolder(std::string const& folder);

}  // namespace QuilloServer

#endif
