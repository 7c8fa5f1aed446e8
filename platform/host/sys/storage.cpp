// The object "storage": a record a mounted file system.
//
//     mount, device, type        from /proc/self/mountinfo; blanks in it are written as \040
//     size, used, available      bytes, from statvfs(3); "available" to an ordinary user
//
// Left out are pseudo file systems, those without a block (proc, sysfs, cgroup), and the kernel's
// own small ones of the types listed below. Of several mounts on one place the last one counts,
// which covers the others; of several mounts of one device the first one, so that a bind mount is
// not counted twice. A file system that does not tell its figures, or not within a second, is shown
// without them.
//
//     36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue
#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <string>

#include "host/contract.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/space_probe.hpp"
#include "host/sys/storage.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

struct Mount {
    std::string number;  // of the device, MAJOR:MINOR
    std::string place;
    std::string type;
    std::string device;
};

// These have blocks, and still hold nothing of a user's; or would mount something when asked.
bool IsKernelType(std::string const& type) {
    static std::array<char const*, 5> const types = {"autofs", "devtmpfs", "efivarfs", "hugetlbfs",
                                                     "ramfs"};
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool IsOctal(char c) {
    return c >= '0' && c <= '7';
}

// "a\040b" gives "a b".
std::string Unescaped(std::string const& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && IsOctal(text[i + 1]) &&
            IsOctal(text[i + 2]) && IsOctal(text[i + 3])) {
            plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                       (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

// The fields of a line, with one blank between two of them: a device may be empty.
std::vector<std::string> Fields(std::string const& line) {
    std::vector<std::string> fields;
    for (std::size_t begin = 0; begin <= line.size();) {
        std::size_t const end = std::min(line.find(' ', begin), line.size());
        fields.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
    return fields;
}

std::optional<Mount> ParseMount(std::string const& line) {
    std::vector<std::string> const words = Fields(line);
    auto const dash = std::find(words.begin(), words.end(), "-");
    if (dash - words.begin() < 6 || words.end() - dash < 3) {
        return std::nullopt;
    }
    return Mount{words[2], Unescaped(words[4]), dash[1], Unescaped(dash[2])};
}

// Every mount that is not covered by a later one on the same place.
std::vector<Mount> ParseMounts(std::string const& text) {
    std::vector<std::string> const lines = Lines(text);
    std::vector<Mount> mounts;
    std::set<std::string> places;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        std::optional<Mount> const mount = ParseMount(*line);
        if (mount && places.insert(mount->place).second) {
            mounts.push_back(*mount);
        }
    }
    std::reverse(mounts.begin(), mounts.end());
    return mounts;
}

// The record of a mount; nothing for a file system without blocks.
std::optional<Record> MakeRecord(Mount const& mount, SpaceProbe& probe) {
    std::optional<Space> const space = probe.SpaceAt(mount.place);
    if (!space) {
        return Record{mount.place,  mount.device, mount.type,
                      std::nullopt, std::nullopt, std::nullopt};
    }
    if (space->size == 0) {
        return std::nullopt;
    }
    return Record{mount.place,
                  mount.device,
                  mount.type,
                  std::to_string(space->size),
                  std::to_string(space->used),
                  std::to_string(space->available)};
}

}  // namespace

// The probe remembers what hangs, so there is one for the process.
std::optional<Table> ReadStorage() {
    static SpaceProbe probe(AskFileSystem, std::chrono::seconds(1));
    return ReadStorage(probe);
}

std::optional<Table> ReadStorage(SpaceProbe& probe) {
    std::string const path = MachineRoots().proc + "/self/mountinfo";
    std::optional<std::string> const text = ReadText(path);
    if (!text) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "storage: %s cannot be read", path.c_str());
        return std::nullopt;
    }
    Table table{{"mount", "device", "type", "size", "used", "available"}, {}};
    std::set<std::string> shown;  // the devices' numbers
    for (Mount const& mount : ParseMounts(*text)) {
        if (IsKernelType(mount.type) || shown.count(mount.number) != 0) {
            continue;
        }
        std::optional<Record> const record = MakeRecord(mount, probe);
        if (record) {
            shown.insert(mount.number);
            table.records.push_back(*record);
        }
    }
    return table;
}

}  // namespace QuilloHost
