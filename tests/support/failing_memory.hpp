// Memory that runs out on demand. Including this file replaces the program's operator new: one file
// of a program does.
#ifndef QUILLO_TESTS_FAILING_MEMORY_HPP
#define QUILLO_TESTS_FAILING_MEMORY_HPP

#include <cstdlib>
#include <new>

namespace FailingMemory {

// How many allocations succeed before one fails; below 0, all of them do.
inline int allowance = -1;

// Whether one failed since `Allow`.
inline bool hasFailed = false;

// Whether memory is to be had again behind the one that fails.
enum Failure { AllFromThenOn, Once };
inline Failure failure = AllFromThenOn;

inline void Allow(int allocations, Failure kind = AllFromThenOn) {
    allowance = allocations;
    failure = kind;
    hasFailed = false;
}

inline void AllowAll() {
    allowance = -1;
}

// The next allocations succeed, for the time of this object: the test's own.
class Pause {
public:
    Pause() : before(allowance) { allowance = -1; }
    Pause(Pause const&) = delete;
    Pause& operator=(Pause const&) = delete;
    ~Pause() { allowance = before; }

private:
    int before;
};

// Counts one allocation, and tells whether it is one that fails.
inline bool FailsNow() {
    bool const fails = allowance == 0;
    hasFailed = hasFailed || fails;
    if (allowance > 0 || (fails && failure == Once)) {
        --allowance;
    }
    return fails;
}

// Null where there is no memory.
inline void* Allocate(std::size_t size) noexcept {
    return FailsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
}

inline void* AllocateOrThrow(std::size_t size) {
    void* const memory = Allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace FailingMemory

// Not inlined: the compiler would see memory of operator new go to free.
[[gnu::noinline]] void* operator new(std::size_t size) {
    return FailingMemory::AllocateOrThrow(size);
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    return FailingMemory::AllocateOrThrow(size);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return FailingMemory::Allocate(size);
}
[[gnu::noinline]] void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return FailingMemory::Allocate(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif
