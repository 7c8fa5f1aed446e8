// A target as libFuzzer calls it, and how its inputs are changed.
//
// What a target tries takes time in proportion to its input, and few rules need more than a line of
// text. So most inputs are short, and one change in eight may lead to any length.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "oracle.hpp"

extern "C" {
int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned seed);
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size,
                             std::size_t most);  // libFuzzer's
}

namespace {

constexpr std::size_t usualSize = 128;

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Check(std::string(data, data + size));
    return 0;
}

// An input that is too long loses its middle: texts are read from the front, and what is done with
// them from the back.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                    unsigned seed) {
    std::size_t const limit = seed % 8 == 0 ? most : std::min(most, usualSize);
    if (size > limit) {
        std::size_t const front = seed / 8 % (limit + 1);
        std::size_t const back = limit - front;
        std::memmove(data + front, data + size - back, back);
        size = limit;
    }
    return LLVMFuzzerMutate(data, size, limit);
}
