// A page's output in memory, and when the first of it came: what a page does before is building its
// tree, what it does from then on is rendering.
#ifndef QUILLO_SERVER_TIMED_STREAM_HPP
#define QUILLO_SERVER_TIMED_STREAM_HPP

#include <chrono>
#include <optional>
#include <ostream>
#include <streambuf>
#include <string>

namespace QuilloServer {

typedef std::chrono::steady_clock Clock;

class TimedBuffer : public std::streambuf {
public:
    std::string text;
    std::optional<Clock::time_point> firstWrite;

protected:
    int_type overflow(int_type byte) override {
        if (!traits_type::eq_int_type(byte, traits_type::eof())) {
            char const one = traits_type::to_char_type(byte);
            xsputn(&one, 1);
        }
        return traits_type::not_eof(byte);
    }

    std::streamsize xsputn(char const* bytes, std::streamsize count) override {
        if (!firstWrite) {
            firstWrite = Clock::now();
        }
        text.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
};

}  // namespace QuilloServer

#endif
