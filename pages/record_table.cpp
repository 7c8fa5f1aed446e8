#include "record_table.hpp"

#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "frame.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

typedef std::vector<std::vector<std::string>> Rows;

// The records of `object`; none when it cannot be had, which the library has reported.
Rows Query(QuilloServer::Request& request, std::string const& object,
           std::vector<Field> const& fields) {
    std::vector<std::string> attributes;
    for (Field const& field : fields) {
        attributes.push_back(field.attribute);
    }
    Rows rows;
    GetObject(request.app, ObjectType_Sys, object, attributes, rows);
    return rows;
}

// A cell with one line of text. A value that is written in another form keeps its own as a title.
Element MakeCell(Field const& field, std::string const& value) {
    if (field.write == nullptr) {
        return Td(value);
    }
    return Td(field.write(value)).SetAttr("class", "quantity").SetAttr("title", SafeAttr(value));
}

Element MakeHeading(QuilloServer::Request& request, Field const& field, char const* scope) {
    return Th().SetAttr("scope", scope) << Phrase(request, field.heading);
}

Element MakeSection(QuilloServer::Request& request, std::string const& heading, Rows const& rows,
                    Element const& table) {
    Section section;
    section << (H3() << Phrase(request, heading));
    if (rows.empty()) {
        section << (P() << Phrase(request, "Nothing to show. The device log says why."));
    } else {
        section << (Div().SetAttr("class", "scroll") << table);
    }
    return section;
}

}  // namespace

Element RecordTable(QuilloServer::Request& request, std::string const& heading,
                    std::string const& object, std::vector<Field> const& fields) {
    Rows const rows = Query(request, object, fields);
    Table table;
    Element const headings = table.AddRow();
    for (Field const& field : fields) {
        headings << MakeHeading(request, field, "col");
    }
    for (auto const& values : rows) {
        Element const row = table.AddRow();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            row << MakeCell(fields[i], values[i]);
        }
    }
    return MakeSection(request, heading, rows, table);
}

Element FactTable(QuilloServer::Request& request, std::string const& heading,
                  std::string const& object, std::vector<Field> const& fields) {
    Rows const rows = Query(request, object, fields);
    Table table;
    for (std::size_t i = 0; i < fields.size() && !rows.empty(); ++i) {
        table.AddRow() << MakeHeading(request, fields[i], "row") << MakeCell(fields[i], rows[0][i]);
    }
    return MakeSection(request, heading, rows, table);
}

}  // namespace Pages
