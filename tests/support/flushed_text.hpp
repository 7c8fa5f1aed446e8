// Text that is written to a stream as services write it: in lines, and flushed now and then.
#ifndef QUILLO_TESTS_FLUSHED_TEXT_HPP
#define QUILLO_TESTS_FLUSHED_TEXT_HPP

#include <algorithm>
#include <cstdio>
#include <string>

enum class Flush { Never, EveryLine, EveryTwoKibibytes };

constexpr Flush everyFlush[] = {Flush::Never, Flush::EveryLine, Flush::EveryTwoKibibytes};

constexpr std::size_t bytesOfALine = 64;

// Lines of 64 bytes that all differ; the last one is cut short where `size` says so.
inline std::string LinesOf(std::size_t size) {
    std::string text;
    while (text.size() < size) {
        std::string const number = std::to_string(text.size() / bytesOfALine);
        text += number + std::string(bytesOfALine - 1 - number.size(), '.') + "\n";
    }
    text.resize(size);
    return text;
}

// Stops at the first write that fails.
inline void WriteFlushed(std::FILE* out, std::string const& text, Flush flush) {
    std::size_t const step = flush == Flush::EveryLine ? bytesOfALine : 2048;
    for (std::size_t done = 0; done < text.size(); done += step) {
        std::size_t const count = std::min(step, text.size() - done);
        bool const isWritten = std::fwrite(text.data() + done, 1, count, out) == count;
        if (!isWritten || (flush != Flush::Never && std::fflush(out) != 0)) {
            return;
        }
    }
}

#endif
