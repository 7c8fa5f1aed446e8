// A device's page as every contender writes it: a navigation bar, a tab set, a title and a table.
//
// All write the same structure. Bytes may differ where the libraries' HTML does (line ends, how an
// element without content is closed), and are compared without that.
#ifndef QUILLO_BENCH_PAGE_CONTENDER_HPP
#define QUILLO_BENCH_PAGE_CONTENDER_HPP

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Bench {

struct Cell {
    std::string text;
    std::string style;
};

struct Row {
    std::string id;
    std::string title;
    std::vector<Cell> cells;
};

// What the page shows. A fifth of the texts has characters that are escaped.
struct PageData {
    std::vector<std::string> items;  // of the navigation bar, the first one selected
    std::vector<std::string> tabs;   // the first one current
    std::string title;
    std::vector<Row> rows;
};

PageData MakePageData(int rows);

// One library's way to the page. The tree, where there is one, lives from `Build` to `Destroy`, and
// what `Write` returns until the next call. What a program would keep from page to page, a buffer
// or a template, a contender keeps too.
class Contender {
public:
    virtual ~Contender() = default;
    virtual void Build(PageData const& data) = 0;
    virtual std::string_view Write() = 0;
    virtual void Destroy() = 0;
};

enum class Kind {
    Tree,    // builds something that it then writes
    Writer,  // writes at once; there is nothing to build or destroy
    Floor    // has the finished page
};

struct Entry {
    char const* name;
    std::unique_ptr<Contender> (*make)();
    Kind kind;
};

// Quillo, the libraries that a programmer would pick instead, and the floor. The first is Quillo.
std::vector<Entry> const& Entries();

// Whether all contenders write the structure that Quillo writes; else says which one does not, and
// where.
bool WriteOneStructure(PageData const& data);

// The elements and texts of the page.
int CountNodes(PageData const& data);

std::unique_ptr<Contender> MakeQuillo();
std::unique_ptr<Contender> MakePugixml();
std::unique_ptr<Contender> MakeTinyxml2();
std::unique_ptr<Contender> MakeTinyxml2Printer();
std::unique_ptr<Contender> MakeLibxml2();
std::unique_ptr<Contender> MakeLibxml2Writer();
std::unique_ptr<Contender> MakeCgicc();
std::unique_ptr<Contender> MakeCtemplate();
std::unique_ptr<Contender> MakeOstream();
std::unique_ptr<Contender> MakeAppend();
std::unique_ptr<Contender> MakeCopy();

}  // namespace Bench

#endif
