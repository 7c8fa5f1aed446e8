#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "example.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

Element PageTitle() {
    return SmallTitle("Fish & <chips>");
}

Element PlainTable() {
    Table table;
    table.AddRow() << Th("Name").SetAttr("scope", "col") << Th("MTU").SetAttr("scope", "col");
    table.AddRow() << Td("lo") << Td("65536");
    table.AddRow() << Td("eth0") << Td("1500");
    return Group() << table << P("Rows: " + std::to_string(table.GetNumRows()));
}

Element TableOfSections() {
    Table table;
    table << Caption("What was sold");
    table << (Thead() << (Tr() << Th("Fruit").SetAttr("scope", "col")
                               << Th("Pieces").SetAttr("scope", "col")));
    table << (Tbody() << (Tr() << Td("Apples") << Td("3")) << (Tr() << Td("Pears") << Td("4")));
    table << (Tfoot() << (Tr() << Td("All") << Td("7").AddStyle(SafeStyle("font-weight", "bold"))));
    return table;
}

}  // namespace

ExampleGroup TitleAndTableExamples() {
    return {
        "Titles and tables",
        false,
        {QUILLO_EXAMPLE(PageTitle), QUILLO_EXAMPLE(PlainTable), QUILLO_EXAMPLE(TableOfSections)}};
}

}  // namespace Pages
