// The objects of kind "sys": this machine, read at the time of the query.
#ifndef QUILLO_HOST_SYS_SYS_OBJECTS_HPP
#define QUILLO_HOST_SYS_SYS_OBJECTS_HPP

#include <optional>
#include <string>

#include "host/table.hpp"

namespace QuilloHost {

std::optional<Table> ReadHost();
std::optional<Table> ReadMemory();
std::optional<Table> ReadInterfaces();
std::optional<Table> ReadStorage();
std::optional<Table> ReadProcesses();
std::optional<Table> ReadLog();
std::optional<Table> FindInLog(std::string const& sought);

ProviderList SysObjects();

}  // namespace QuilloHost

#endif
