// The page server as a program: serves the pages that it is linked with.
#ifndef QUILLO_SERVER_SERVE_HPP
#define QUILLO_SERVER_SERVE_HPP

namespace QuilloServer {

// All of the program's work, from its command line to its exit code.
int Serve(int argc, char const* const* argv) noexcept;

}  // namespace QuilloServer

#endif
