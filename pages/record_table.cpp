#include "record_table.hpp"

#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "frame.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

typedef std::vector<std::vector<std::string>> Rows;

// The records of `object`; none when it cannot be had, which the library has reported.
Rows Query(Request& request, std::string const& object, std::vector<Field> const& fields) {
    std::vector<std::string> attributes;
    for (Field const& field : fields) {
        attributes.push_back(field.attribute);
    }
    Rows rows;
    GetObject(request.app, ObjectType_Sys, object, attributes, rows);
    return rows;
}

// A value that is written in another form keeps its own as a title.
Element MakeValue(Request& request, Field const& field, std::string const& value) {
    if (field.write == nullptr) {
        return Isolated(value);
    }
    std::string const written = field.write(value);
    return Isolated(field.isPhrase ? Translated(request, written) : written)
        .SetAttr("class", "quantity")
        .SetAttr("title", SafeAttr(value));
}

Element MakeCell(Element const& content) {
    return Td() << content;
}

Element MakeSection(Request& request, std::string const& heading, Table const& table) {
    Tag section("section");
    section << (H3() << Phrase(request, heading));
    if (table.impl->children.empty()) {
        section << (P() << Phrase(request, "Nothing to show. The device log says why."));
    } else {
        section << (Div().SetAttr("class", "scroll") << table);
    }
    return section;
}

}  // namespace

Element Isolated(std::string const& text) {
    return text.empty() ? Element(Group()) : Element(TextTag("bdi", text));
}

RecordList::RecordList(Request& request, std::vector<std::string> const& headings)
    : request_(request) {
    for (std::string const& heading : headings) {
        headings_.push_back(Translated(request, heading));
    }
}

// Where there is little room each value is shown behind the heading of its column, which the style
// sheet takes from the cell.
void RecordList::Add(std::vector<Element> const& cells) {
    if (table_.GetNumRows() == 0) {
        table_.SetAttr("class", "records");
        Element const row = table_.AddRow();
        for (std::string const& heading : headings_) {
            row << Th(heading).SetAttr("scope", "col");
        }
    }
    Element const row = table_.AddRow();
    for (std::size_t i = 0; i < cells.size(); ++i) {
        Td cell;
        cell.SetAttr("data-heading", SafeAttr(headings_.at(i)));
        row << (cell << cells[i]);
    }
}

Element RecordList::Section(std::string const& heading) {
    return MakeSection(request_, heading, table_);
}

Element RecordTable(Request& request, std::string const& heading, std::string const& object,
                    std::vector<Field> const& fields) {
    std::vector<std::string> headings;
    for (Field const& field : fields) {
        headings.push_back(field.heading);
    }
    RecordList list(request, headings);
    for (std::vector<std::string> const& values : Query(request, object, fields)) {
        std::vector<Element> cells;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            cells.push_back(MakeValue(request, fields[i], values[i]));
        }
        list.Add(cells);
    }
    return list.Section(heading);
}

Element FactTable(Request& request, std::string const& heading, std::string const& object,
                  std::vector<Field> const& fields) {
    Rows const rows = Query(request, object, fields);
    Table table;
    for (std::size_t i = 0; i < fields.size() && !rows.empty(); ++i) {
        table.AddRow() << (Th().SetAttr("scope", "row") << Phrase(request, fields[i].heading))
                       << MakeCell(MakeValue(request, fields[i], rows[0][i]));
    }
    return MakeSection(request, heading, table);
}

}  // namespace Pages
