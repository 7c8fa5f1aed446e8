// A pipe with a stream on its write end, as a request's output is.
#ifndef QUILLO_TESTS_CAPTURE_PIPE_HPP
#define QUILLO_TESTS_CAPTURE_PIPE_HPP

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

class CapturePipe {
public:
    CapturePipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            std::abort();
        }
        readEnd_ = ends[0];
        out = fdopen(ends[1], "w");
    }
    CapturePipe(CapturePipe const&) = delete;
    CapturePipe& operator=(CapturePipe const&) = delete;
    ~CapturePipe() {
        CloseReadEnd();
        if (out != nullptr) {
            std::fclose(out);
        }
    }

    void CloseReadEnd() {
        if (readEnd_ >= 0) {
            close(readEnd_);
        }
        readEnd_ = -1;
    }

    // Closes the stream and reads what the pipe holds.
    std::string Finish() {
        std::fclose(out);
        out = nullptr;
        std::string text;
        char chunk[4096];
        for (ssize_t count = 1; count > 0;) {
            count = read(readEnd_, chunk, sizeof chunk);
            text.append(chunk, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        return text;
    }

    std::size_t Capacity() const { return static_cast<std::size_t>(fcntl(readEnd_, F_GETPIPE_SZ)); }
    bool SetCapacity(std::size_t size) const {
        return fcntl(readEnd_, F_SETPIPE_SZ, static_cast<int>(size)) >= static_cast<int>(size);
    }
    std::size_t Unread() const {
        int count = 0;
        ioctl(readEnd_, FIONREAD, &count);
        return static_cast<std::size_t>(count);
    }
    void ReadSome(std::size_t size) const {
        std::string chunk(size, '\0');
        if (read(readEnd_, chunk.data(), size) != static_cast<ssize_t>(size)) {
            std::abort();
        }
    }

    std::FILE* out;

private:
    int readEnd_;
};

#endif
