// The object "processes": a record a process, by its memory, the largest first.
//
//     pid          its number
//     name         the name of its command
//     state        a letter, as ps(1) shows it
//     rss_bytes    how much memory it has in use
//     threads      how many threads it has
//
// From /proc/PID/stat, where the name stands between parentheses and may hold blanks, newlines and
// parentheses of its own: it ends at the last ')'.
//
//     4711 (a (b) c) S 1 4711 ...
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "host/contract.hpp"
#include "host/sys/process_ids.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

struct Process {
    int pid;
    std::string name;
    std::string state;
    std::uint64_t bytes;
    std::string threads;
};

// Where fields stand behind the ')' in the line, counted from 0.
constexpr std::size_t stateField = 0;
constexpr std::size_t threadsField = 17;
constexpr std::size_t pagesField = 21;

// 0 for what is no number, and for more bytes than can be counted.
std::uint64_t BytesOf(std::string const& pages) {
    std::uint64_t const pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    std::uint64_t number = 0;
    std::from_chars(pages.data(), pages.data() + pages.size(), number);
    return number <= std::numeric_limits<std::uint64_t>::max() / pageSize ? number * pageSize : 0;
}

std::optional<Process> ParseStat(int pid, std::string const& text) {
    std::size_t const open = text.find('(');
    std::size_t const close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    std::vector<std::string> const fields = Words(text.substr(close + 1));
    if (fields.size() <= pagesField) {
        return std::nullopt;
    }
    return Process{pid, text.substr(open + 1, close - open - 1), fields[stateField],
                   BytesOf(fields[pagesField]), fields[threadsField]};
}

bool IsLarger(Process const& left, Process const& right) {
    return left.bytes != right.bytes ? left.bytes > right.bytes : left.pid < right.pid;
}

// A process that ends while it is read is left out.
std::vector<Process> ReadAll(std::vector<int> const& ids) {
    std::vector<Process> processes;
    for (int const pid : ids) {
        std::optional<std::string> const text =
            ReadText(MachineRoots().proc + "/" + std::to_string(pid) + "/stat");
        std::optional<Process> const process = text ? ParseStat(pid, *text) : std::nullopt;
        if (process) {
            processes.push_back(*process);
        }
    }
    std::sort(processes.begin(), processes.end(), IsLarger);
    return processes;
}

}  // namespace

std::optional<Table> ReadProcesses() {
    std::optional<std::vector<int>> const ids = ReadProcessIds();
    if (!ids) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "processes: %s cannot be read",
                      MachineRoots().proc.c_str());
        return std::nullopt;
    }
    Table table{{"pid", "name", "state", "rss_bytes", "threads"}, {}};
    for (Process const& process : ReadAll(*ids)) {
        table.records.push_back({std::to_string(process.pid), process.name, process.state,
                                 std::to_string(process.bytes), process.threads});
    }
    return table;
}

}  // namespace QuilloHost
