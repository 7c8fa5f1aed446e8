#include "device/system_calls.hpp"

#include <fcntl.h>
#include <poll.h>
#include <stdio_ext.h>

#include <algorithm>
#include <cerrno>

#include "support/recording_platform.hpp"

extern "C" {

int __real_pipe2(int* ends, int flags);
std::FILE* __real_fdopen(int fd, char const* mode);
int __real_poll(pollfd* pipes, nfds_t count, int timeout);
ssize_t __real_read(int fd, void* buffer, std::size_t size);
int __real_close(int fd);
int __real_fclose(std::FILE* stream);

int __wrap_pipe2(int* ends, int flags);
std::FILE* __wrap_fdopen(int fd, char const* mode);
int __wrap_poll(pollfd* pipes, nfds_t count, int timeout);
ssize_t __wrap_read(int fd, void* buffer, std::size_t size);
int __wrap_close(int fd);
int __wrap_fclose(std::FILE* stream);
}

namespace {

SystemCalls* watched = nullptr;

void Record(std::string const& line) {
    Platform().trace.push_back(line);
}

ssize_t StepResult(ReadStep const& step, int fd, void* buffer, std::size_t size) {
    switch (step.kind) {
        case ReadStep::Real:
            return __real_read(fd, buffer, std::min(size, static_cast<std::size_t>(step.number)));
        case ReadStep::Fails:
            errno = static_cast<int>(step.number);
            return -1;
        case ReadStep::Claims:
            break;
    }
    return step.number;
}

}  // namespace

SystemCalls::SystemCalls() {
    watched = this;
}

SystemCalls::~SystemCalls() {
    watched = nullptr;
}

std::string SystemCalls::RoleOf(int fd) const {
    if (fd == readEnd) {
        return "read end";
    }
    return fd == writeEnd ? "write end" : "descriptor " + std::to_string(fd);
}

int __wrap_pipe2(int* ends, int flags) {
    if (watched == nullptr) {
        return __real_pipe2(ends, flags);
    }
    Record("pipe2");
    if (watched->pipeError != 0) {
        errno = watched->pipeError;
        return -1;
    }
    int const result = __real_pipe2(ends, flags);
    watched->readEnd = ends[0];
    watched->writeEnd = ends[1];
    return result;
}

std::FILE* __wrap_fdopen(int fd, char const* mode) {
    if (watched == nullptr) {
        return __real_fdopen(fd, mode);
    }
    Record("fdopen " + watched->RoleOf(fd) + ", " + mode);
    if (watched->fdopenError != 0) {
        errno = watched->fdopenError;
        return nullptr;
    }
    watched->stream = __real_fdopen(fd, mode);
    return watched->stream;
}

int __wrap_poll(pollfd* pipes, nfds_t count, int timeout) {
    if (watched == nullptr || watched->pollError == 0) {
        return __real_poll(pipes, count, timeout);
    }
    errno = watched->pollError;
    return -1;
}

ssize_t __wrap_read(int fd, void* buffer, std::size_t size) {
    if (watched == nullptr) {
        return __real_read(fd, buffer, size);
    }
    ReadStep step = {ReadStep::Real, static_cast<ssize_t>(size)};
    if (!watched->reads.empty()) {
        step = watched->reads.front();
        watched->reads.pop_front();
    }
    ssize_t const result = StepResult(step, fd, buffer, size);
    int const error = errno;
    Record("read " + watched->RoleOf(fd) + ", " + std::to_string(size) + ": " +
           std::to_string(result));
    errno = error;
    return result;
}

int __wrap_close(int fd) {
    if (watched == nullptr) {
        return __real_close(fd);
    }
    Record("close " + watched->RoleOf(fd));
    int const result = __real_close(fd);
    if (watched->closeError == 0) {
        return result;
    }
    errno = watched->closeError;
    return -1;
}

int __wrap_fclose(std::FILE* stream) {
    if (watched == nullptr) {
        return __real_fclose(stream);
    }
    Record(stream == watched->stream ? "fclose stream" : "fclose of another stream");
    if (watched->fcloseError == 0) {
        return __real_fclose(stream);
    }
    __fpurge(stream);
    __real_fclose(stream);
    errno = watched->fcloseError;
    return EOF;
}
