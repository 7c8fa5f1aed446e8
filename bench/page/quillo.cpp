#include <ostream>
#include <quillo>

#include "page/contender.hpp"
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

class QuilloPage : public Contender {
public:
    void Build(PageData const& data) override {
        Div page;
        page.SetAttr("id", "page");
        page << MakeNavBar(Slots(data.items));
        Div content;
        content << SmallTitle(data.title);
        Table table;
        table.SetAttr("id", "interfaces");
        table.SetAttr("class", "records");
        for (Row const& row : data.rows) {
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
        content << table;
        page << MakeTabs(Slots(data.tabs), content);
        page_ = page;
    }

    std::string_view Write() override {
        text_.clear();
        StringBuffer buffer(text_);
        std::ostream stream(&buffer);
        Renderer renderer(stream);
        page_.impl->Render(renderer, 0);
        return text_;
    }

    void Destroy() override { page_ = Element(); }

private:
    Element page_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakeQuillo() {
    return std::make_unique<QuilloPage>();
}

}  // namespace Bench
