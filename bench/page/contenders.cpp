#include <algorithm>
#include <cstdio>

#include "page/compose.hpp"

namespace Bench {
namespace {

std::string Page(Entry const& entry, PageData const& data) {
    std::unique_ptr<Contender> const contender = entry.make();
    contender->Build(data);
    std::string const page(contender->Write());
    contender->Destroy();
    return page;
}

// The tags and texts, in their order, without what differs from library to library: line ends, the
// end of a leaf's tag, how quotes in a text are written.
std::string Structure(std::string const& page) {
    std::string plain;
    for (std::size_t i = 0; i < page.size(); ++i) {
        bool const isQuote = page.compare(i, 6, "&quot;") == 0;
        if (isQuote) {
            plain += '"';
            i += 5;
        } else if (page[i] == '>') {
            while (plain.back() == ' ' || plain.back() == '/') {
                plain.pop_back();
            }
            plain += '>';
        } else if (page[i] != '\n') {
            plain += page[i];
        }
    }
    return plain;
}

struct NodeCounter {
    int count = 0;

    void Open(char const*) { ++count; }
    void Leaf(char const*) { ++count; }
    void Attribute(char const*, std::string const&) {}
    void Text(std::string const&) { ++count; }
    void Close() {}
    void CloseLeaf() {}
};

}  // namespace

std::vector<Entry> const& Entries() {
    static std::vector<Entry> const entries = {
        {"quillo", MakeQuillo, Kind::Tree},
        {"pugixml", MakePugixml, Kind::Tree},
        {"tinyxml2 DOM", MakeTinyxml2, Kind::Tree},
        {"libxml2 DOM", MakeLibxml2, Kind::Tree},
        {"cgicc", MakeCgicc, Kind::Tree},
        {"ctemplate", MakeCtemplate, Kind::Tree},
        {"tinyxml2 printer", MakeTinyxml2Printer, Kind::Writer},
        {"libxml2 writer", MakeLibxml2Writer, Kind::Writer},
        {"plain ostream", MakeOstream, Kind::Writer},
        {"append its lines", MakeAppend, Kind::Floor},
        {"copy its bytes", MakeCopy, Kind::Floor}};
    return entries;
}

bool WriteOneStructure(PageData const& data) {
    std::string const expected = Structure(Page(Entries().front(), data));
    for (Entry const& entry : Entries()) {
        std::string const found = Structure(Page(entry, data));
        if (found != expected) {
            std::size_t const at = static_cast<std::size_t>(
                std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first -
                found.begin());
            std::fprintf(stderr, "page: %s writes another structure, from byte %zu on:\n%s\n%s\n",
                         entry.name, at, found.substr(at, 70).c_str(),
                         expected.substr(at, 70).c_str());
            return false;
        }
    }
    return true;
}

int CountNodes(PageData const& data) {
    NodeCounter counter;
    Compose(counter, data);
    return counter.count;
}

}  // namespace Bench
