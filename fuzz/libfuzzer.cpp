// A target as libFuzzer calls it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "oracle.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Check(std::string(data, data + size));
    return 0;
}
