// The base library: the platform's exception, its text comparison, and two container helpers.
#ifndef QUILLO_PLATFORM_GLB_H
#define QUILLO_PLATFORM_GLB_H

#include <exception>
#include <string>
#include <vector>

namespace Glb {

// What the platform throws. `file` is not owned (in practice a string literal) and may be null.
class Error : public std::exception {
public:
    Error(int line, char const* file, std::string const& message)
        : line_(line), file_(file), message_(message) {}

    int line() const { return line_; }
    char const* file() const { return file_; }
    std::string const& message() const { return message_; }
    char const* what() const noexcept override { return message_.c_str(); }

private:
    int line_;
    char const* file_;
    std::string message_;
};

// Raises the platform's error, normally by throwing `Error(line, file, message)`. A platform may
// also return, after which the caller throws by itself.
void ThrowError(std::string const& message, int line, char const* file);

// The size of a string or of a vector as a signed number.
template <class C>
int isize(C const& container) {
    return static_cast<int>(container.size());
}

// Appends one empty element to `elements` and returns it.
template <class T>
T& extend_one(std::vector<T>& elements) {
    elements.emplace_back();
    return elements.back();
}

}  // namespace Glb

// Compares two NUL-terminated texts byte for byte; 0 when they are equal.
extern "C" int Glb_strcmp(char const* left, char const* right);

#endif
