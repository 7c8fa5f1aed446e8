#include "text/conversion.hpp"

#include <algorithm>

namespace Quillo {
namespace {

constexpr std::size_t blockSize = 512;

}  // namespace

std::string Converted(char const* text, Conversion* convert) {
    char block[blockSize * mostOfAByte];
    std::size_t left = std::strlen(text);
    std::string converted;
    while (left != 0) {
        std::size_t const size = std::min(left, blockSize);
        char const* const end = convert(text, text + size, block);
        converted.append(block, static_cast<std::size_t>(end - block));
        text += size;
        left -= size;
    }
    return converted;
}

}  // namespace Quillo
