#include "host/sys/process_ids.hpp"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

#include "host/sys/roots.hpp"

namespace QuilloHost {

std::optional<std::vector<int>> ReadProcessIds() {
    std::error_code error;
    std::vector<int> ids;
    std::filesystem::directory_iterator entries(MachineRoots().proc, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
        std::string const name = entries->path().filename().string();
        int id = 0;
        auto const parsed = std::from_chars(name.data(), name.data() + name.size(), id);
        if (parsed.ec == std::errc() && *parsed.ptr == '\0') {
            ids.push_back(id);
        }
    }
    if (error) {
        return std::nullopt;
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

}  // namespace QuilloHost
