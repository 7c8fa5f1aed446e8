// The object "log": entries of the device log, the newest first, where it goes to a file.
//
//     log                          the newest entries
//     log LEVEL BEFORE TEXT        those of LEVEL (error, warning or info) and above that stand
//                                  before byte BEFORE of the file ("end": anywhere) and hold TEXT,
//                                  letters of ASCII in either case
//
//     offset                       where the entry begins in the file, in bytes
//     time, process, level, source, text    see log_line.hpp
//
// A query gives up to 50 entries and looks at up to 1 MiB of the file, however large that is; both
// together keep the answer within a pipe of 64 KiB. The last record is none of them: all of it is
// empty but its offset, which is the BEFORE of the entries that are older still; 0 where the search
// came to the beginning of the file.
//
// The log is standard error, so its file is what that is at the moment, under whatever name.
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/contract.hpp"
#include "host/sys/log_line.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"

namespace QuilloHost {

namespace {

constexpr std::size_t mostEntries = 50;
constexpr std::uint64_t mostBytes = 1 << 20;

struct Search {
    std::string_view level = {};
    std::uint64_t before = UINT64_MAX;
    std::string_view text = {};
};

// A part of the file, and where it begins there.
struct Part {
    std::uint64_t begin = 0;
    std::string bytes = {};
};

typedef std::unique_ptr<std::FILE, int (*)(std::FILE*)> File;

std::string_view TakeWord(std::string_view& rest) {
    std::size_t const blank = std::min(rest.find(' '), rest.size());
    std::string_view const word = rest.substr(0, blank);
    rest.remove_prefix(std::min(blank + 1, rest.size()));
    return word;
}

Search ParseSearch(std::string_view sought) {
    Search search;
    search.level = TakeWord(sought);
    std::string_view const before = TakeWord(sought);
    std::from_chars(before.data(), before.data() + before.size(), search.before);
    search.text = sought;
    return search;
}

// The file that standard error is; null when it is none. What is no file is not opened: it might
// wait for a reader.
File OpenLog() {
    std::string const path = MachineRoots().proc + "/self/fd/2";
    struct stat status {};
    bool const isFile = stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    return {isFile ? std::fopen(path.c_str(), "re") : nullptr, std::fclose};
}

// As much as may be looked at of what stands before `before`.
std::optional<Part> ReadPart(std::FILE* file, std::uint64_t before) {
    struct stat status {};
    if (fstat(fileno(file), &status) != 0) {
        return std::nullopt;
    }
    std::uint64_t const end = std::min(before, static_cast<std::uint64_t>(status.st_size));
    Part part;
    part.begin = end - std::min(end, mostBytes);
    part.bytes.resize(end - part.begin);
    bool const isThere = fseeko(file, static_cast<off_t>(part.begin), SEEK_SET) == 0;
    part.bytes.resize(isThere ? std::fread(part.bytes.data(), 1, part.bytes.size(), file) : 0);
    return isThere && std::ferror(file) == 0 ? std::optional<Part>(part) : std::nullopt;
}

// Adds the entries of `part` that are sought, and returns where older ones may be found.
std::uint64_t AddEntries(Part const& part, Search const& search, Table& table) {
    std::string_view rest = part.bytes;
    while (!rest.empty() && table.records.size() < mostEntries) {
        std::string_view line = rest.substr(0, rest.size() - (rest.back() == '\n' ? 1 : 0));
        std::size_t const lineBegin = line.rfind('\n') + 1;
        bool const isWhole = lineBegin != 0 || part.begin == 0;
        // A line that is longer than all that may be looked at is taken in parts.
        if (!isWhole && rest.size() != part.bytes.size()) {
            break;
        }
        line.remove_prefix(lineBegin);
        rest = rest.substr(0, lineBegin);
        if (line.empty() || !HoldsText(line, search.text)) {
            continue;
        }
        LogLine const entry = ParseLogLine(line);
        if (IsLetThrough(entry.level, search.level)) {
            table.records.push_back({std::to_string(part.begin + lineBegin), entry.time,
                                     entry.process, entry.level, entry.source, entry.text});
        }
    }
    return part.begin + rest.size();
}

}  // namespace

std::optional<Table> FindInLog(std::string const& sought) {
    Search const search = ParseSearch(sought);
    File const file = OpenLog();
    std::optional<Part> const part = file ? ReadPart(file.get(), search.before) : std::nullopt;
    if (!part) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__,
                      "log: standard error is no file that can be read, so there are no entries to "
                      "show");
        return std::nullopt;
    }
    Table table{{"offset", "time", "process", "level", "source", "text"}, {}};
    std::uint64_t const rest = AddEntries(*part, search, table);
    table.records.push_back({std::to_string(rest), "", "", "", "", ""});
    return table;
}

std::optional<Table> ReadLog() {
    return FindInLog("");
}

}  // namespace QuilloHost
