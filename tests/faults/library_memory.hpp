// Memory that runs out inside the library alone.
//
// A program that links library_memory.cpp gets its operator new. An allocation is the library's
// when the innermost function outside of the C++ library's own that asked for it lies in the
// library:
//
//     operator new <- std::string::append <- Quillo::Filter <- a test          the library's
//     operator new <- std::string::append <- a test                           not
//
// What tests, their framework and the platform allocate never fails and is not counted.
#ifndef QUILLO_TESTS_LIBRARY_MEMORY_HPP
#define QUILLO_TESTS_LIBRARY_MEMORY_HPP

#include <cstddef>

namespace LibraryMemory {

// Takes the shared library that `function` lies in for the library, from now on.
void Watch(void const* function);

enum class Failure { Once, FromThenOn };

// The library's next `allocations` allocations succeed, and the one behind them fails; none fails
// behind `everything`.
constexpr long everything = -1;
void FailBehind(long allocations, Failure failure);

// All succeed again.
void Succeed();

// Whether one failed since `FailBehind`.
bool HasFailed();

// Whether the first that failed was for something else than a report, a stream or a destructor:
// somebody has to be told of it.
bool HasToTell();

// The name of a type that the library has thrown since `FailBehind` and that is not std::bad_alloc,
// as the compiler writes it; null: there was none. Whether the library caught it makes no
// difference.
char const* WhatWasThrown();

// What the library has allocated and nobody has released yet.
struct Kept {
    long blocks;
    std::size_t bytes;
};
Kept WhatIsKept();

}  // namespace LibraryMemory

#endif
