// Objects of the attribute service as tables.
#ifndef QUILLO_PAGES_RECORD_TABLE_HPP
#define QUILLO_PAGES_RECORD_TABLE_HPP

#include <page.hpp>
#include <quillo>
#include <string>
#include <vector>

namespace Pages {

// How an attribute is shown: under which phrase, and how its value is written.
struct Field {
    std::string attribute;
    std::string heading;
    std::string (*write)(std::string const& value);  // null: as it stands
    bool isPhrase = false;  // what is written is a phrase for the translation service
};

// A section with a heading and a table of all records of `object`, a row a record.
Quillo::Element RecordTable(QuilloServer::Request& request, std::string const& heading,
                            std::string const& object, std::vector<Field> const& fields);

// The same for an object of one record: a row a field.
Quillo::Element FactTable(QuilloServer::Request& request, std::string const& heading,
                          std::string const& object, std::vector<Field> const& fields);

// `text` as data: its direction is its own, whatever that of the page. Nothing for an empty one.
Quillo::Element Isolated(std::string const& text);

// A table that is filled a row at a time, for a page that shows records its own way.
class RecordList {
public:
    // `headings` are phrases, one a column.
    RecordList(QuilloServer::Request& request, std::vector<std::string> const& headings);

    // Adds a row. Of each cell the page gives what stands in it; there are as many as headings.
    void Add(std::vector<Quillo::Element> const& cells);

    // The section with `heading` and the table, or the word that there is nothing to show.
    Quillo::Element Section(std::string const& heading);

private:
    QuilloServer::Request& request_;
    std::vector<std::string> headings_;  // translated
    Quillo::Table table_;
};

}  // namespace Pages

#endif
