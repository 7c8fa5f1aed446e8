#include "page/quillo_tree.hpp"

#include "page/string_buffer.hpp"

using namespace Quillo;

namespace Bench {
namespace {

Element Tag(char const* tag) {
    return Element(boost::shared_ptr<ElementImpl>(new ElementImpl(tag, false)));
}

std::vector<Slot> Slots(std::vector<std::string> const& labels) {
    std::vector<Slot> slots;
    for (std::string const& label : labels) {
        slots.push_back({label, "/" + label, slots.empty(), false});
    }
    return slots;
}

Element MakeTable(std::vector<Row> const& rows) {
    Table table;
    table.SetAttr("id", "interfaces");
    table.SetAttr("class", "records");
    for (Row const& row : rows) {
        Element line = table.AddRow();
        line.SetAttr("id", row.id);
        line.SetAttr("title", row.title);
        for (Cell const& cell : row.cells) {
            Element field = Tag("td");
            field.SetAttr("class", "value");
            field.SetAttr("style", cell.style);
            field << Text(cell.text, true);
            line << field;
        }
    }
    return table;
}

}  // namespace

Element MakeTree(PageData const& data) {
    Div page;
    page.SetAttr("id", "page");
    page << MakeNavBar(Slots(data.items));
    Div content;
    content << SmallTitle(data.title) << MakeTable(data.rows);
    page << MakeTabs(Slots(data.tabs), content);
    return page;
}

void AppendTree(Element const& tree, std::string& text) {
    StringBuffer buffer(text);
    std::ostream stream(&buffer);
    Renderer renderer(stream);
    tree.impl->Render(renderer, 0);
}

}  // namespace Bench
