#include <quillo>

#include "widgets/fixed_attr.hpp"

namespace Quillo {
namespace {

char const rowTag[] = "tr";

Element MakeElement(char const* tag) {
    return Element(boost::shared_ptr<ElementImpl>(new ElementImpl(tag, false)));
}

}  // namespace

Element SmallTitle(std::string const& title) {
    Div block;
    SetFixedAttr(block, "class", "breadcrumb allSmall");
    block << (H2() << Text(title, true));
    return block;
}

Table::Table() : Element(MakeElement("table")) {}

Element Table::AddRow() {
    Element const row = MakeElement(rowTag);
    *this << row;
    return row;
}

int Table::GetNumRows() const {
    int count = 0;
    for (boost::shared_ptr<ElementImpl> const& child : Checked(impl).children) {
        if (Checked(child).tag == rowTag) {
            ++count;
        }
    }
    return count;
}

}  // namespace Quillo
