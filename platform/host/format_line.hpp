// The two little languages of a request.
//
// The attribute line holds names with one blank between two of them. A name may be empty, which no
// attribute is called: it keeps its position, so that no value moves into another's.
//
// The format line is a line of the answer: '%' and the decimal digits behind it, as many as there
// are, stand for the value at that position, counted from 1; every other byte, and a '%' without
// digits, stands for itself.
#ifndef QUILLO_HOST_FORMAT_LINE_HPP
#define QUILLO_HOST_FORMAT_LINE_HPP

#include <string>
#include <vector>

#include "host/table.hpp"

namespace QuilloHost {

// "name  mtu" gives "name", "" and "mtu"; "" gives "".
std::vector<std::string> SplitAttributes(std::string const& line);

// One line of the answer.
//
//     "%2: %1%, %9" with the values a, b and the default -    b: a%, -
//
// `defaultValue` stands for a value that is not there. Control bytes (0x00-0x1F, 0x7F) in what
// stands for a value become blanks.
std::string FormatLine(std::string const& format, std::vector<Value> const& values,
                       std::string const& defaultValue);

}  // namespace QuilloHost

#endif
