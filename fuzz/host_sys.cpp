// The objects of the machine, read from files of any content.
#include <linux/if_link.h>
#include <net/if.h>
#include <netpacket/packet.h>
#include <unistd.h>
#include <host/host.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "feed.hpp"
#include "host/sys/space_probe.hpp"
#include "host/sys/storage.hpp"
#include "host/sys/sys_objects.hpp"
#include "host_log.hpp"
#include "oracle.hpp"
#include "pieces.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/system_calls.hpp"

using namespace QuilloHost;

namespace {

typedef std::vector<std::string> Texts;

Texts Words(std::string const& line) {
    Texts words = Pieces(line, " \t");
    words.erase(std::remove(words.begin(), words.end(), ""), words.end());
    return words;
}

// A whole number of 64 bits that is `text`, times `factor`.
std::optional<std::uint64_t> Product(std::string const& text, std::uint64_t factor) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    std::uint64_t const number = std::strtoull(text.c_str(), nullptr, 10);
    bool const fits = errno == 0 && number <= UINT64_MAX / factor;
    return fits ? std::optional<std::uint64_t>(number * factor) : std::nullopt;
}

FixtureMachine& Machine() {
    static FixtureMachine machine;
    return machine;
}

void ExpectTable(std::optional<Table> const& table, std::vector<Record> const& records,
                 std::string const& rule) {
    Expect(table.has_value(), rule);
    ExpectEqual(table->records, records, rule);
    for (Record const& record : table->records) {
        ExpectEqual(record.size(), table->columns.size(), "a record has a value a column");
    }
}

void CheckMemory(std::string const& text) {
    Machine().Write("proc/meminfo", text);
    Record expected;
    for (std::string const name : {"MemTotal:", "MemAvailable:", "SwapTotal:", "SwapFree:"}) {
        expected.emplace_back();
        bool isFound = false;
        for (std::string const& line : Pieces(text, "\n")) {
            Texts const words = Words(line);
            if (!isFound && words.size() == 3 && words[0] == name && words[2] == "kB") {
                isFound = true;
                auto const bytes = Product(words[1], 1024);
                expected.back() = bytes ? Value(std::to_string(*bytes)) : std::nullopt;
            }
        }
    }
    ExpectTable(ReadMemory(), {expected}, "memory: the figures of the lines");
}

void CheckHost(std::string const& uptime, std::string const& loads) {
    Machine().Write("proc/uptime", uptime);
    Machine().Write("proc/loadavg", loads);
    Texts const seconds = Pieces(Pieces(uptime, "\n")[0], ".");
    Texts const averages = Words(Pieces(loads, "\n")[0]);
    std::optional<Table> const table = ReadHost();
    Expect(table.has_value() && table->records.size() == 1, "host: one record");
    Record const& record = table->records[0];
    ExpectEqual(record.at(3), seconds.size() > 1 ? Value(seconds[0]) : std::nullopt,
                "host: the seconds ahead of the point");
    for (std::size_t i = 0; i < 3; ++i) {
        ExpectEqual(record.at(4 + i), averages.size() >= 3 ? Value(averages[i]) : std::nullopt,
                    "host: the first three words are the loads");
    }
}

struct Process {
    std::uint64_t bytes;
    Record record;
};

std::optional<Process> ParseProcess(int pid, std::string const& stat) {
    std::size_t const open = stat.find('(');
    std::size_t const close = stat.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open) {
        return std::nullopt;
    }
    Texts const fields = Words(stat.substr(close + 1));
    if (fields.size() < 22) {
        return std::nullopt;
    }
    std::string const digits = fields[21].substr(0, fields[21].find_first_not_of("0123456789"));
    std::uint64_t const page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    std::uint64_t const bytes = Product(digits, page).value_or(0);
    return Process{bytes,
                   {std::to_string(pid), stat.substr(open + 1, close - open - 1), fields[0],
                    std::to_string(bytes), fields[17]}};
}

void CheckProcesses(Texts const& stats) {
    std::vector<Process> processes;
    int pid = 0;
    for (std::string const& stat : stats) {
        Machine().Write("proc/" + std::to_string(++pid) + "/stat", stat);
        auto const process = ParseProcess(pid, stat);
        if (process) {
            auto const place =
                std::find_if(processes.begin(), processes.end(),
                             [&](Process const& other) { return other.bytes < process->bytes; });
            processes.insert(place, *process);
        }
    }
    std::vector<Record> expected;
    for (Process const& process : processes) {
        expected.push_back(process.record);
    }
    ExpectTable(ReadProcesses(), expected, "processes: the largest first");
}

// "\040" is a blank, and any other three octal digits a byte.
std::string Unescaped(std::string const& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string const digits = text.substr(at + (text[at] == '\\' ? 1 : 0), 3);
        bool const isEscape = text[at] == '\\' && digits.size() == 3 &&
                              digits.find_first_not_of("01234567") == std::string::npos;
        plain += isEscape ? static_cast<char>(std::stoi(digits, nullptr, 8)) : text[at];
        at += isEscape ? 3 : 0;
    }
    return plain;
}

// What a line of mountinfo says: device number, place, device and type.
std::optional<Texts> ParseMount(std::string const& line) {
    Texts const fields = Pieces(line, " ");
    std::size_t const dash =
        static_cast<std::size_t>(std::find(fields.begin(), fields.end(), "-") - fields.begin());
    if (dash < 6 || dash + 2 >= fields.size()) {
        return std::nullopt;
    }
    return Texts{fields[2], Unescaped(fields[4]), Unescaped(fields[dash + 2]), fields[dash + 1]};
}

// Places that end with an 'x' do not tell their figures.
int TellSpace(std::string const& place, struct statvfs& figures) {
    figures = {};
    figures.f_frsize = 512;
    figures.f_blocks = 10 + place.size();
    figures.f_bfree = 7;
    figures.f_bavail = 5;
    errno = EIO;
    return !place.empty() && place.back() == 'x' ? -1 : 0;
}

// At most `most` mounts are shown: each takes a thread.
void CheckStorage(std::string const& text, std::size_t most) {
    static std::vector<std::string> const kernelTypes = {"autofs", "devtmpfs", "efivarfs",
                                                         "hugetlbfs", "ramfs"};
    std::vector<Texts> mounts;
    for (std::string const& line : Pieces(text, "\n")) {
        auto const mount = ParseMount(line);
        if (mount) {
            mounts.erase(
                std::remove_if(mounts.begin(), mounts.end(),
                               [&](Texts const& other) { return other[1] == (*mount)[1]; }),
                mounts.end());
            mounts.push_back(*mount);
        }
    }
    std::vector<Texts> shown;
    for (Texts const& mount : mounts) {
        bool const isKernels = std::count(kernelTypes.begin(), kernelTypes.end(), mount[3]) != 0;
        bool const isTwice = std::any_of(shown.begin(), shown.end(),
                                         [&](Texts const& other) { return other[0] == mount[0]; });
        if (!isKernels && !isTwice) {
            shown.push_back(mount);
        }
    }
    if (shown.size() > most) {
        return;
    }
    Machine().Write("proc/self/mountinfo", text);
    // However busy the machine is, no figure comes too late.
    static SpaceProbe probe(AskFileSystem, std::chrono::hours(24));
    std::optional<Table> const table = ReadStorage(probe);
    Expect(table.has_value(), "storage: a table");
    ExpectEqual(table->records.size(), shown.size(), "storage: a record a file system");
    for (std::size_t i = 0; i < shown.size(); ++i) {
        Record const& record = table->records[i];
        ExpectEqual(Record(record.begin(), record.begin() + 3),
                    Record{shown[i][1], shown[i][2], shown[i][3]}, "storage: place, device, type");
        std::string const place = shown[i][1].c_str();
        std::size_t const blocks = 10 + place.size();
        bool const tells = place.empty() || place.back() != 'x';
        ExpectEqual(
            Record(record.begin() + 3, record.end()),
            tells ? Record{std::to_string(512 * blocks), std::to_string(512 * (blocks - 7)), "2560"}
                  : Record(3),
            "storage: the figures of a file system that tells them");
    }
}

// One interface, in two entries of the list: its link, and an address of no known family.
void CheckInterfaces(std::string const& label, std::string const& address, Texts const& files) {
    std::string const name = label.substr(0, label.find(':'));
    sockaddr_ll link = {};
    link.sll_family = AF_PACKET;
    link.sll_halen = static_cast<unsigned char>(address.size());
    std::memcpy(link.sll_addr, address.data(), std::min(address.size(), sizeof link.sll_addr));
    rtnl_link_stats counters = {};
    counters.rx_bytes = 4000000000U;
    ifaddrs second = {};
    std::string labelText = label;
    second.ifa_name = labelText.data();
    second.ifa_flags = IFF_RUNNING;
    ifaddrs first = {};
    first.ifa_next = &second;
    first.ifa_name = labelText.data();
    first.ifa_addr = reinterpret_cast<sockaddr*>(&link);
    first.ifa_data = &counters;
    SystemCalls::Now().interfaces = &first;
    SystemCalls::Now().indices = {{name, 7}};
    std::string const folder = "sys/class/net/" + name + "/";
    Machine().Write(folder + "ifindex", files[0]);
    Machine().Write(folder + "operstate", files[1]);
    Machine().Write(folder + "mtu", files[2]);
    Machine().Write(folder + "statistics/rx_bytes", files[3]);

    bool const isIts = Pieces(files[0], "\n")[0] == "7";
    auto const line = [&](std::size_t i) { return Value(Pieces(files[i], "\n")[0]); };
    std::string mac;
    for (std::size_t i = 0; i < std::min<std::size_t>(address.size() & 255, 8); ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, ":%02x", link.sll_addr[i]);
        mac += i == 0 ? digits + 1 : digits;
    }
    mac = mac.find_first_not_of("0:") == std::string::npos ? "" : mac;
    ExpectTable(ReadInterfaces(),
                {{name, isIts ? line(1) : Value("up"), mac, "", "",
                  isIts ? line(3) : Value("4000000000"), "0", isIts ? line(2) : std::nullopt}},
                "interfaces: what the list and the folder tell");
    SystemCalls::Now().interfaces.reset();
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    SystemCalls::Now().statvfs = TellSpace;
    static char const* const names[] = {"lo", "eth0", "eth0:1"};
    unsigned const kind = feed.Below(6);
    std::string const name = names[feed.Below(3)];
    if (kind == 0) {
        CheckMemory(feed.Rest());
    } else if (kind == 1) {
        std::string const uptime = feed.Text();
        CheckHost(uptime, feed.Rest());
    } else if (kind < 4) {
        Texts stats;
        for (int i = 0; i < 3; ++i) {
            stats.push_back(feed.Text());
        }
        CheckProcesses(stats);
    } else if (kind == 4) {
        CheckStorage(feed.Rest(), 4);
    } else {
        std::string const address = feed.Text();
        Texts files;
        for (int i = 0; i < 4; ++i) {
            files.push_back(feed.Text());
        }
        CheckInterfaces(name, address, files);
    }
    ExpectEqual(TakeHostLog(), Texts(), "files of any content are logged nowhere");
}
