#ifndef QUILLO_HOST_SYS_PROCESS_IDS_HPP
#define QUILLO_HOST_SYS_PROCESS_IDS_HPP

#include <optional>
#include <vector>

namespace QuilloHost {

// The processes there are, ascending: the numbered folders of /proc. Nothing when that cannot be
// read.
std::optional<std::vector<int>> ReadProcessIds();

}  // namespace QuilloHost

#endif
