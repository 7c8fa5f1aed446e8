// A device's page as every contender writes it: a navigation bar, a tab set, a title and a table.
//
// All write the same structure. Bytes may differ where the libraries' HTML does (line ends, how an
// element without content is closed), and are compared without that.
#ifndef QUILLO_BENCH_PAGE_CONTENDER_HPP
#define QUILLO_BENCH_PAGE_CONTENDER_HPP

#include <functional>
#include <memory>
#include <string>
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

// One library's way to the page. The tree, where there is one, lives from `Build` to `Destroy`.
class Contender {
public:
    virtual ~Contender() = default;
    virtual void Build(PageData const& data) = 0;
    virtual void Write(std::string& out) = 0;
    virtual void Destroy() = 0;
};

struct Entry {
    char const* name;
    std::unique_ptr<Contender> (*make)();
};

std::unique_ptr<Contender> MakeQuillo();
std::unique_ptr<Contender> MakePugixml();
std::unique_ptr<Contender> MakeTinyxml2();
std::unique_ptr<Contender> MakeLibxml2();
std::unique_ptr<Contender> MakeCgicc();

}  // namespace Bench

#endif
