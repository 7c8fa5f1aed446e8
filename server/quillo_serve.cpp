// quillo-serve: serves the sample pages, with this machine's data. `quillo-serve --help` says how.
#include "serve.hpp"

int main(int argc, char** argv) {
    return QuilloServer::Serve(argc, argv);
}
