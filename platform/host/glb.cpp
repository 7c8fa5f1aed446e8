#include <cstring>

#include "host/contract.hpp"

void Glb::ThrowError(std::string const& message, int line, char const* file) {
    throw Error(line, file, message);
}

// Null equals null alone, and sorts before every text.
int Glb_strcmp(char const* left, char const* right) {
    if (left == nullptr || right == nullptr)
        return (left != nullptr ? 1 : 0) - (right != nullptr ? 1 : 0);
    return std::strcmp(left, right);
}
