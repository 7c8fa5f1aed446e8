// The capture of one answer of the attribute service.
//
//     service ──> stream ──> writeFd ═ pipe ═ readFd ──> Finish
//
// The pipe is left as the system gives it: the whole answer is written before any of it is read.
#include <attribute_service.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio_ext.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"

namespace {

constexpr int chunkSize = 256;

// Whether nothing is in the pipe, and somebody holds its other end.
bool IsDrained(int fd) {
    pollfd pipe = {fd, POLLIN, 0};
    return poll(&pipe, 1, 0) == 0;
}

// Reads up to the first read that does not fill a chunk. The whole answer is in the pipe by now: a
// child of the service that holds the pipe open is not waited for.
std::string ReadAll(int fd) {
    std::string text;
    char chunk[chunkSize];
    for (;;) {
        if (IsDrained(fd)) {
            return text;
        }
        int const count = static_cast<int>(read(fd, chunk, sizeof chunk));
        if (count < 0) {
            char const* const reason = std::strerror(errno);
            ReportDiagnostic(logSpecError, "%s: read() failed - %s (truncating result)", "Finish",
                             reason);
            return text;
        }
        if (count > chunkSize) {
            ReportDiagnostic(logSpecError, "%s: Huh?  %d > %d", "Finish", count, chunkSize);
            return text;
        }
        text.append(chunk, static_cast<std::size_t>(count));
        if (count < chunkSize) {
            return text;
        }
    }
}

}  // namespace

LoaReq::LoaReq(ZOV_AppData& request)
    : app(request), readFd(-1), writeFd(-1), stream(nullptr), savedOut(request.out) {}

int LoaReq::Init() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        char const* const reason = std::strerror(errno);
        ReportDiagnostic(logSpecError, "%s: pipe() failed - %s", "Init", reason);
        return 1;
    }
    readFd = ends[0];
    writeFd = ends[1];
    stream = fdopen(writeFd, "w");
    if (stream == nullptr) {
        char const* const reason = std::strerror(errno);
        ReportDiagnostic(logSpecError, "%s: fdopen() failed - %s", "Init", reason);
        return 1;
    }
    writeFd = -1;  // the stream's from now on
    app.out = stream;
    std::memset(app.loaState, 0, sizeof app.loaState);
    if (loareq_initialize(&app) != 0) {
        ReportDiagnostic(logSpecError, "%s: loa_initialize_loareq() failed", "Init");
        return 1;
    }
    return 0;
}

std::string LoaReq::Finish() {
    if (stream == nullptr) {
        return std::string();
    }
    loareq_free(&app);
    std::fclose(stream);
    stream = nullptr;
    return ReadAll(readFd).c_str();
}

LoaReq::~LoaReq() {
    if (readFd != -1) {
        close(readFd);
    }
    if (writeFd != -1) {
        close(writeFd);
    }
    if (stream != nullptr) {
        // Nobody reads the pipe any more: writing to it would raise SIGPIPE.
        __fpurge(stream);
        std::fclose(stream);
    }
    app.out = savedOut;
}
