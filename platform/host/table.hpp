// What an object of the attribute service holds when it is asked.
#ifndef QUILLO_HOST_TABLE_HPP
#define QUILLO_HOST_TABLE_HPP

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace QuilloHost {

// One value of one record; nothing when it cannot be had. An empty text is a value.
using Value = std::optional<std::string>;

// A record's values in the order of the table's columns, as many as there are columns.
using Record = std::vector<Value>;

struct Table {
    std::vector<std::string> columns;  // the names of the attributes
    std::vector<Record> records;
};

// An object that the service knows: its name, and what reads it at the time of the query. A reader
// returns nothing, behind a log entry, when the object cannot be had at all; it may throw
// std::bad_alloc.
//
// Of an object that is too large to be read as a whole, records may be searched for: what stands
// behind the name and a blank is handed to `find`. Null: the object is known by its name alone.
struct Provider {
    char const* object;
    std::optional<Table> (*read)();
    std::optional<Table> (*find)(std::string const& sought) = nullptr;
};

// The objects of one kind. The array belongs to whoever made the list, and stays.
struct ProviderList {
    Provider const* first = nullptr;
    std::size_t count = 0;

    Provider const* begin() const { return first; }
    Provider const* end() const { return first + count; }
};

}  // namespace QuilloHost

#endif
