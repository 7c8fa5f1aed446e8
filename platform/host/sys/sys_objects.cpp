#include "host/sys/sys_objects.hpp"

#include <iterator>

namespace QuilloHost {

ProviderList SysObjects() {
    static Provider const objects[] = {
        {"host", ReadHost},       {"memory", ReadMemory},       {"interfaces", ReadInterfaces},
        {"storage", ReadStorage}, {"processes", ReadProcesses}, {"log", ReadLog, FindInLog}};
    return {objects, std::size(objects)};
}

}  // namespace QuilloHost
