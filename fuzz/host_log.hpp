// The device log of the host platform, kept instead of written. A program that links host_log.cpp
// wraps Log_SpecEntry (see CMakeLists.txt).
#ifndef QUILLO_FUZZ_HOST_LOG_HPP
#define QUILLO_FUZZ_HOST_LOG_HPP

#include <string>
#include <vector>

// The messages since the last call, in order.
std::vector<std::string> TakeHostLog();

#endif
