// Where the machine shows itself: /proc and /sys, unless a test puts folders of its own in their
// place.
#ifndef QUILLO_HOST_SYS_ROOTS_HPP
#define QUILLO_HOST_SYS_ROOTS_HPP

#include <string>

namespace QuilloHost {

struct Roots {
    std::string proc = "/proc";
    std::string sys = "/sys";
};

// The roots that the objects read below. Changed by tests alone.
Roots& MachineRoots();

}  // namespace QuilloHost

#endif
