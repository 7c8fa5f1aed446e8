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
};

// A section with a heading and a table of all records of `object`, a row a record.
Quillo::Element RecordTable(QuilloServer::Request& request, std::string const& heading,
                            std::string const& object, std::vector<Field> const& fields);

// The same for an object of one record: a row a field.
Quillo::Element FactTable(QuilloServer::Request& request, std::string const& heading,
                          std::string const& object, std::vector<Field> const& fields);

}  // namespace Pages

#endif
