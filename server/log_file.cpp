#include "log_file.hpp"

#include <device_log.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "descriptor.hpp"

namespace QuilloServer {
namespace {

std::string logPath;

// Returns 0, or the error's number.
int Open(std::string const& path) {
    Descriptor const file(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0640));
    return file.Get() >= 0 && dup2(file.Get(), STDERR_FILENO) >= 0 ? 0 : errno;
}

}  // namespace

void OpenLog(std::string const& path) {
    std::string const absolute = std::filesystem::absolute(path).string();
    int const error = Open(absolute);
    if (error != 0) {
        throw std::runtime_error("the log file " + path + " cannot be written: " +
                                 std::strerror(error) + "; name another one with --log-file");
    }
    logPath = absolute;
}

void ReopenLog() {
    int const error = logPath.empty() ? 0 : Open(logPath);
    if (error != 0) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                      "the log file %s cannot be opened anew, the old one goes on: %s",
                      logPath.c_str(), std::strerror(error));
    }
}

}  // namespace QuilloServer
