// What is written to standard error while this object lives.
#ifndef QUILLO_TESTS_CAPTURED_STDERR_HPP
#define QUILLO_TESTS_CAPTURED_STDERR_HPP

#include <unistd.h>

#include <cstdio>
#include <string>

class CapturedStderr {
public:
    CapturedStderr() : before_(dup(STDERR_FILENO)), file_(std::tmpfile()) {
        dup2(fileno(file_), STDERR_FILENO);
    }
    CapturedStderr(CapturedStderr const&) = delete;
    CapturedStderr& operator=(CapturedStderr const&) = delete;
    ~CapturedStderr() {
        dup2(before_, STDERR_FILENO);
        close(before_);
        std::fclose(file_);
    }

    std::string Text() const {
        std::string text;
        char chunk[4096];
        for (off_t at = 0;;) {
            ssize_t const count = pread(fileno(file_), chunk, sizeof chunk, at);
            if (count <= 0) {
                return text;
            }
            text.append(chunk, static_cast<std::size_t>(count));
            at += count;
        }
    }

private:
    int before_;
    std::FILE* file_;
};

#endif
