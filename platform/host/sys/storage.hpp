// The object "storage", with a probe of the caller's.
#ifndef QUILLO_HOST_SYS_STORAGE_HPP
#define QUILLO_HOST_SYS_STORAGE_HPP

#include <optional>

#include "host/sys/space_probe.hpp"
#include "host/table.hpp"

namespace QuilloHost {

// As ReadStorage() does, with figures that `probe` asks for.
std::optional<Table> ReadStorage(SpaceProbe& probe);

}  // namespace QuilloHost

#endif
