// A page server with a page that takes two seconds and one that takes none.
#include <unistd.h>

#include <page.hpp>
#include <serve.hpp>

namespace {

using QuilloServer::Page;
using QuilloServer::Request;

void WriteSlowly(Request&, std::ostream& out) {
    sleep(2);
    out << "slow";
}

void WriteQuickly(Request&, std::ostream& out) {
    out << "quick";
}

Page const slow("slow", "Slow", 1, WriteSlowly);
Page const quick("quick", "Quick", 2, WriteQuickly);

}  // namespace

int main(int argc, char** argv) {
    return QuilloServer::Serve(argc, argv);
}
