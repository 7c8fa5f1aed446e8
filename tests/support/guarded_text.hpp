// A text whose NUL is the last byte before a page that cannot be read: a function that reads past
// the end ends the test.
#ifndef QUILLO_TESTS_GUARDED_TEXT_HPP
#define QUILLO_TESTS_GUARDED_TEXT_HPP

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <string>

class GuardedText {
public:
    explicit GuardedText(std::string const& text)
        : pageSize(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          pages(static_cast<char*>(mmap(nullptr, 2 * pageSize, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
          begin(pages + pageSize - text.size() - 1) {
        std::memcpy(begin, text.c_str(), text.size() + 1);
        mprotect(pages + pageSize, pageSize, PROT_NONE);
    }
    GuardedText(GuardedText const&) = delete;
    GuardedText& operator=(GuardedText const&) = delete;
    ~GuardedText() { munmap(pages, 2 * pageSize); }

    char const* c_str() const { return begin; }

private:
    std::size_t pageSize;
    char* pages;
    char* begin;
};

#endif
