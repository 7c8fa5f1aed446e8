// A stream's way into a string that keeps its memory from page to page.
#ifndef QUILLO_BENCH_PAGE_STRING_BUFFER_HPP
#define QUILLO_BENCH_PAGE_STRING_BUFFER_HPP

#include <streambuf>
#include <string>

namespace Bench {

class StringBuffer : public std::streambuf {
public:
    explicit StringBuffer(std::string& text) : out(text) {}

private:
    std::streamsize xsputn(char const* bytes, std::streamsize count) override {
        out.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type byte) override {
        out += traits_type::to_char_type(byte);
        return byte;
    }

    std::string& out;
};

}  // namespace Bench

#endif
