#include "host/answer_stream.hpp"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>

#include "host/contract.hpp"

namespace QuilloHost {

namespace {

std::size_t PageSize() {
    return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::size_t PagesFor(std::size_t bytes) {
    return (bytes + PageSize() - 1) / PageSize();
}

bool IsPipe(int fd) {
    struct stat status {};
    return fd >= 0 && fstat(fd, &status) == 0 && S_ISFIFO(status.st_mode);
}

// The most pages that the unread bytes of the pipe can take; a reader may have emptied the first
// page in part.
std::size_t UnreadPages(int fd) {
    int unread = 0;
    if (ioctl(fd, FIONREAD, &unread) != 0 || unread <= 0)
        return 0;
    std::size_t const bytes = static_cast<std::size_t>(unread);
    return std::min(bytes, 2 * PagesFor(bytes) + 1);
}

std::size_t Pages(int capacity) {
    return capacity <= 0 ? 0 : static_cast<std::size_t>(capacity) / PageSize();
}

// The pages of the pipe, after it was enlarged to `wanted` pages if need be and if allowed.
std::size_t EnlargePipe(int fd, std::size_t wanted) {
    std::size_t const pages = Pages(fcntl(fd, F_GETPIPE_SZ));
    if (pages >= wanted || wanted > INT_MAX / PageSize())
        return pages;
    return std::max(pages, Pages(fcntl(fd, F_SETPIPE_SZ, static_cast<int>(wanted * PageSize()))));
}

// Whether the pipe takes `answer` without waiting for its reader, behind what is ahead of it.
bool FitsPipe(std::FILE* out, std::string const& answer, std::string const& subject) {
    int const fd = fileno(out);
    std::size_t const ahead = UnreadPages(fd) + PagesFor(__fpending(out));
    std::size_t const needed = ahead + PagesFor(answer.size());
    std::size_t const pages = EnlargePipe(fd, needed);
    if (needed <= pages)
        return true;
    Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                  "%s: the answer takes %zu bytes, and the pipe has room for %zu: ask for "
                  "less, or raise fs.pipe-max-size",
                  subject.c_str(), answer.size(), (pages - std::min(ahead, pages)) * PageSize());
    return false;
}

bool WriteAll(int fd, std::string const& text) {
    for (std::size_t done = 0; done < text.size();) {
        ssize_t const count = write(fd, text.data() + done, text.size() - done);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (count == 0)
            errno = EIO;
        if (count <= 0 && errno != EINTR)
            return false;
    }
    return true;
}

// A pipe gets the answer past the stream's buffer, in one write: the size of the buffer would
// settle how many pages the answer takes.
bool Write(std::FILE* out, std::string const& answer) {
    if (IsPipe(fileno(out)))
        return std::fflush(out) == 0 && WriteAll(fileno(out), answer);
    return std::fwrite(answer.data(), 1, answer.size(), out) == answer.size() &&
           std::fflush(out) == 0;
}

}  // namespace

bool WriteAnswer(std::FILE* out, std::string const& answer, std::string const& subject) {
    if (out == nullptr) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: there is no output", subject.c_str());
        return false;
    }
    if (IsPipe(fileno(out)) && !FitsPipe(out, answer, subject))
        return false;
    if (Write(out, answer))
        return true;
    Log_SpecEntry(logSpecError, __FILE__, __LINE__, "%s: the answer could not be written - %s",
                  subject.c_str(), std::strerror(errno));
    return false;
}

}  // namespace QuilloHost
