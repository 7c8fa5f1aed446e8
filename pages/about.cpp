// The about page: what this program is made of, and what it runs on.
#include <quillo_kit/elements.hpp>

#include "frame.hpp"
#include "record_table.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

// The compiler that this file came from, and so the program.
std::string Compiler() {
#if defined(__clang__)
    return "Clang " __clang_version__;
#elif defined(__GNUC__)
    return "GCC " __VERSION__;
#else
    return __VERSION__;
#endif
}

Element MakeProgram(Request& request) {
    struct Fact {
        char const* heading;
        std::string value;
    };
    Table table;
    for (Fact const& fact : {Fact{"Version", QUILLO_VERSION}, Fact{"Compiler", Compiler()}}) {
        table.AddRow() << (Th().SetAttr("scope", "row") << Phrase(request, fact.heading))
                       << (Td() << Isolated(fact.value));
    }
    return Tag("section") << (H3() << Isolated("Quillo"))
                          << (Div().SetAttr("class", "scroll") << table);
}

Element MakeLicence(Request& request) {
    return Tag("section") << (H3() << Phrase(request, "Licence"))
                          << (P() << Phrase(request,
                                            "Quillo is free software under the MIT licence. "
                                            "© 2026 The Quillo developers."));
}

void WriteAbout(Request& request, std::ostream& out) {
    Group content;
    content << MakeProgram(request)
            << FactTable(request, "Device", "host",
                         {{"hostname", "Name", nullptr},
                          {"kernel", "Kernel", nullptr},
                          {"architecture", "Architecture", nullptr}})
            << MakeLicence(request);
    WriteFramed(request, out, "about", content);
}

QuilloServer::Page const about("about", "About", 8, WriteAbout);

}  // namespace
}  // namespace Pages
