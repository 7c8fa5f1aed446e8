// A table as one text, a line a record: values with '|' between them, "~" for one that cannot be
// had.
#ifndef QUILLO_TESTS_SHOWN_TABLE_HPP
#define QUILLO_TESTS_SHOWN_TABLE_HPP

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "host/table.hpp"

inline std::string Shown(std::optional<QuilloHost::Table> const& table) {
    std::string text;
    for (QuilloHost::Record const& record :
         table ? table->records : std::vector<QuilloHost::Record>{{"no table"}}) {
        for (std::size_t i = 0; i < record.size(); ++i) {
            text += (i == 0 ? "" : "|") + record[i].value_or("~");
        }
        text += '\n';
    }
    return text;
}

// The value of `column` in the first record whose column `key` is `keyValue`; "~" when there is
// none, or it cannot be had.
inline std::string ValueIn(QuilloHost::Table const& table, std::string const& key,
                           std::string const& keyValue, std::string const& column) {
    auto const indexOf = [&](std::string const& name) {
        auto const found = std::find(table.columns.begin(), table.columns.end(), name);
        return static_cast<std::size_t>(found - table.columns.begin());
    };
    for (QuilloHost::Record const& record : table.records) {
        if (record.at(indexOf(key)) == keyValue) {
            return record.at(indexOf(column)).value_or("~");
        }
    }
    return "~";
}

#endif
