// The object "memory": one record, in bytes, from /proc/meminfo.
//
//     MemTotal:       24576000 kB
//     MemAvailable:   20480000 kB
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "host/contract.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

Value BytesOf(std::string const& kibibytes) {
    std::uint64_t number = 0;
    char const* const end = kibibytes.data() + kibibytes.size();
    auto const parsed = std::from_chars(kibibytes.data(), end, number);
    bool const isNumber = parsed.ec == std::errc() && parsed.ptr == end;
    bool const fits = number <= std::numeric_limits<std::uint64_t>::max() / 1024;
    return isNumber && fits ? Value(std::to_string(number * 1024)) : std::nullopt;
}

Value BytesNamed(std::string const& name, std::vector<std::string> const& lines) {
    for (std::string const& line : lines) {
        std::vector<std::string> const words = Words(line);
        if (words.size() == 3 && words[0] == name && words[2] == "kB") {
            return BytesOf(words[1]);
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<Table> ReadMemory() {
    std::string const path = MachineRoots().proc + "/meminfo";
    std::optional<std::string> const text = ReadText(path);
    if (!text) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "memory: %s cannot be read", path.c_str());
        return std::nullopt;
    }
    std::vector<std::string> const lines = Lines(*text);
    return Table{{"total", "available", "swap_total", "swap_free"},
                 {{BytesNamed("MemTotal:", lines), BytesNamed("MemAvailable:", lines),
                   BytesNamed("SwapTotal:", lines), BytesNamed("SwapFree:", lines)}}};
}

}  // namespace QuilloHost
