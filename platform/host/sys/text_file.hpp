// Small files of /proc and /sys.
#ifndef QUILLO_HOST_SYS_TEXT_FILE_HPP
#define QUILLO_HOST_SYS_TEXT_FILE_HPP

#include <optional>
#include <string>
#include <vector>

namespace QuilloHost {

// The whole file; nothing when it cannot be opened or read.
std::optional<std::string> ReadText(std::string const& path);

// The first line of the file, without its newline; nothing when it cannot be read.
std::optional<std::string> ReadFirstLine(std::string const& path);

// "a  b" gives a, b: the words between blanks and tabs.
std::vector<std::string> Words(std::string const& line);

// "a\nb\n" gives a, b.
std::vector<std::string> Lines(std::string const& text);

}  // namespace QuilloHost

#endif
