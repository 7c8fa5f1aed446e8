// An open descriptor that is closed with its owner.
#ifndef QUILLO_SERVER_DESCRIPTOR_HPP
#define QUILLO_SERVER_DESCRIPTOR_HPP

#include <unistd.h>

#include <utility>

namespace QuilloServer {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    int Get() const { return descriptor_; }
    int Release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_ = -1;
};

}  // namespace QuilloServer

#endif
