#include "device/failing_new.hpp"

#include <cstdlib>
#include <new>

namespace {

bool isArmed = false;
bool failsAllAfter = false;
int left = 0;  // allocations up to the failing one

bool FailsNow() {
    if (!isArmed) {
        return false;
    }
    --left;
    return left == 0 || (left < 0 && failsAllAfter);
}

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = FailsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

FailingNew::FailingNew(int nth, bool andAllAfter) {
    left = nth;
    failsAllAfter = andAllAfter;
    isArmed = true;
}

FailingNew::~FailingNew() {
    isArmed = false;
}

bool FailingNew::HasFailed() const {
    return left <= 0;
}
