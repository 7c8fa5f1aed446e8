// A line of the device log, taken apart; device_log.cpp writes them.
//
//     2024-05-01T12:30:05.123+02:00 [4711] warning src/text/filter.cpp:31: Filter: bad byte \x01
//     time                           process level  source                  text
#ifndef QUILLO_HOST_SYS_LOG_LINE_HPP
#define QUILLO_HOST_SYS_LOG_LINE_HPP

#include <string>
#include <string_view>

namespace QuilloHost {

struct LogLine {
    std::string time;
    std::string process;
    std::string level;  // "error", "warning" or "info"; "other" when the line has another form
    std::string source;
    std::string text;  // the whole line when it has another form
};

// Texts of more than 1000 bytes are cut before a character of UTF-8, and end with "…".
LogLine ParseLogLine(std::string_view line);

// Whether a line of that level is let through by `lowest`, a level too. A line of another form is
// as much as an error: it is better to see too much than too little. So does an unknown `lowest`
// let everything through.
bool IsLetThrough(std::string_view level, std::string_view lowest);

// Whether `sought` stands in `line`, letters of ASCII in either case.
bool HoldsText(std::string_view line, std::string_view sought);

}  // namespace QuilloHost

#endif
