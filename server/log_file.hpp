// The file that the device log goes to. The platform writes it to standard error, so the file takes
// the place of that.
#ifndef QUILLO_SERVER_LOG_FILE_HPP
#define QUILLO_SERVER_LOG_FILE_HPP

#include <string>

namespace QuilloServer {

// Writes the log to the end of `path` from now on, in this process and those it makes; a relative
// path keeps its meaning. Throws std::runtime_error when it cannot be opened.
void OpenLog(std::string const& path);

// Opens it anew, under the same name: the old file may have been moved away. When it cannot be
// opened, the old one goes on. Does nothing when there is none.
void ReopenLog();

}  // namespace QuilloServer

#endif
