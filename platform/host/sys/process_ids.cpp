#include "host/sys/process_ids.hpp"

#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <memory>
#include <system_error>

#include "host/sys/roots.hpp"

namespace QuilloHost {

namespace {

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

// The number that `name` is; nothing when it is none.
std::optional<int> IdOf(char const* name) {
    int id = 0;
    char const* const end = name + std::strlen(name);
    auto const parsed = std::from_chars(name, end, id);
    bool const isNumber = parsed.ec == std::errc() && parsed.ptr == end;
    return isNumber ? std::optional<int>(id) : std::nullopt;
}

}  // namespace

// Not by std::filesystem, which ends the process when memory runs out.
std::optional<std::vector<int>> ReadProcessIds() {
    std::unique_ptr<DIR, FolderCloser> const folder(opendir(MachineRoots().proc.c_str()));
    if (folder == nullptr) {
        return std::nullopt;
    }
    std::vector<int> ids;
    errno = 0;  // what tells the end of the folder from one that breaks off
    while (dirent const* const entry = readdir(folder.get())) {
        if (std::optional<int> const id = IdOf(entry->d_name)) {
            ids.push_back(*id);
        }
        errno = 0;
    }
    if (errno != 0) {
        return std::nullopt;
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

}  // namespace QuilloHost
