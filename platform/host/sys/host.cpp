// The object "host": one record.
//
//     hostname, kernel, architecture    as uname(2) gives them
//     uptime                            whole seconds, from /proc/uptime "93784.12 180000.00"
//     load1, load5, load15              from /proc/loadavg "0.15 0.10 0.05 1/234 5678"
//     processes                         how many there are: the numbered folders of /proc
#include <sys/utsname.h>

#include <optional>
#include <string>
#include <vector>

#include "host/sys/process_ids.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

// The three names; none of them when the system does not tell.
std::vector<Value> Names() {
    struct utsname names {};
    if (uname(&names) != 0) {
        return std::vector<Value>(3);
    }
    return {names.nodename, names.release, names.machine};
}

Value Uptime() {
    std::optional<std::string> const line = ReadFirstLine(MachineRoots().proc + "/uptime");
    std::size_t const point = line ? line->find('.') : std::string::npos;
    return point == std::string::npos ? std::nullopt : Value(line->substr(0, point));
}

// The load averages; none of them when the file is not as it should be.
std::vector<Value> Loads() {
    std::optional<std::string> const line = ReadFirstLine(MachineRoots().proc + "/loadavg");
    std::vector<std::string> const words = Words(line.value_or(""));
    if (words.size() < 3) {
        return std::vector<Value>(3);
    }
    return {words[0], words[1], words[2]};
}

Value ProcessCount() {
    std::optional<std::vector<int>> const ids = ReadProcessIds();
    return ids ? Value(std::to_string(ids->size())) : std::nullopt;
}

}  // namespace

std::optional<Table> ReadHost() {
    std::vector<Value> const names = Names();
    std::vector<Value> const loads = Loads();
    return Table{
        {"hostname", "kernel", "architecture", "uptime", "load1", "load5", "load15", "processes"},
        {{names[0], names[1], names[2], Uptime(), loads[0], loads[1], loads[2], ProcessCount()}}};
}

}  // namespace QuilloHost
