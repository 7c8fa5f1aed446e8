#include "host/format_line.hpp"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace QuilloHost {

namespace {

bool IsControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

// The number that begins at `begin`; 0, which is no position, when it is too large for any.
std::size_t ParsePosition(char const* begin, char const* end) {
    std::size_t position = 0;
    bool const isNumber = std::from_chars(begin, end, position).ec == std::errc();
    return isNumber ? position : 0;
}

std::string ValueAt(std::size_t position, std::vector<Value> const& values,
                    std::string const& defaultValue) {
    bool const isThere = position >= 1 && position <= values.size();
    std::string value = isThere ? values[position - 1].value_or(defaultValue) : defaultValue;
    std::replace_if(value.begin(), value.end(), IsControl, ' ');
    return value;
}

}  // namespace

std::vector<std::string> SplitAttributes(std::string const& line) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin <= line.size();) {
        std::size_t const end = std::min(line.find(' ', begin), line.size());
        names.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

std::string FormatLine(std::string const& format, std::vector<Value> const& values,
                       std::string const& defaultValue) {
    std::string line;
    for (std::size_t at = 0; at < format.size();) {
        std::size_t const digitsEnd =
            format[at] == '%'
                ? std::min(format.find_first_not_of("0123456789", at + 1), format.size())
                : at + 1;
        if (digitsEnd == at + 1) {
            line += format[at++];
            continue;
        }
        char const* const text = format.data();
        line += ValueAt(ParsePosition(text + at + 1, text + digitsEnd), values, defaultValue);
        at = digitsEnd;
    }
    return line;
}

}  // namespace QuilloHost
