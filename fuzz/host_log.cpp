#include "host_log.hpp"

#include <cstdarg>
#include <cstdio>

extern "C" void __wrap_Log_SpecEntry(int level, char const* file, int line, char const* format, ...)
    __attribute__((format(printf, 4, 5)));

namespace {

std::vector<std::string> kept;

}  // namespace

void __wrap_Log_SpecEntry(int, char const*, int, char const* format, ...) {
    char message[1024] = "";
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    kept.emplace_back(message);
}

std::vector<std::string> TakeHostLog() {
    std::vector<std::string> taken;
    taken.swap(kept);
    return taken;
}
