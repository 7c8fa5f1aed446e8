#include "faults/library_memory.hpp"

#include <cxxabi.h>
#include <dlfcn.h>
#include <link.h>
#include <unwind.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <new>
#include <typeinfo>

namespace LibraryMemory {
namespace {

// The code of the library or of the program.
struct Code {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    bool Holds(std::uintptr_t address) const { return begin <= address && address < end; }
};

Code library;
Code program;

// What stands before each block, and keeps its alignment.
struct alignas(std::max_align_t) Head {
    std::size_t size;
    bool isLibrarys;
};

long allowance = everything;
Failure kind = Failure::Once;
bool hasFailed = false;
bool hasToTell = false;
char const* thrown = nullptr;
Kept kept = {0, 0};

// Where the code is of the object that is loaded at `base`, the program itself where it is 0.
struct Search {
    ElfW(Addr) base;
    Code found;
};

int FindCode(dl_phdr_info* object, std::size_t, void* given) {
    Search& search = *static_cast<Search*>(given);
    bool const isProgram = object->dlpi_name[0] == '\0';
    if (search.base == 0 ? !isProgram : object->dlpi_addr != search.base) {
        return 0;
    }
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        ElfW(Phdr) const& segment = object->dlpi_phdr[i];
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
            search.found.begin = object->dlpi_addr + segment.p_vaddr;
            search.found.end = search.found.begin + segment.p_memsz;
        }
    }
    return 1;
}

Code CodeAt(void const* base) {
    Search search = {reinterpret_cast<ElfW(Addr)>(base), {}};
    dl_iterate_phdr(FindCode, &search);
    return search.found;
}

// The walk from a function of the C++ library outwards, up to one of the library or the program.
struct Walk {
    std::uintptr_t start;
    bool hasStarted;
    bool endsInLibrary;
};

_Unwind_Reason_Code Step(_Unwind_Context* context, void* given) {
    Walk& walk = *static_cast<Walk*>(given);
    std::uintptr_t const address = _Unwind_GetIP(context);
    walk.hasStarted = walk.hasStarted || address == walk.start;
    if (!walk.hasStarted) {
        return _URC_NO_REASON;
    }
    walk.endsInLibrary = library.Holds(address);
    return walk.endsInLibrary || program.Holds(address) ? _URC_END_OF_STACK : _URC_NO_REASON;
}

bool IsLibrarys(std::uintptr_t caller) {
    if (library.Holds(caller) || program.Holds(caller) || library.end == 0) {
        return library.Holds(caller);
    }
    Walk walk = {caller, false, false};
    _Unwind_Backtrace(Step, &walk);
    return walk.endsInLibrary;
}

// Parts of the names of functions that say nothing of memory that runs out in them. A stream turns
// bad, a report is in the log by then, and an element's destructor has nobody to tell.
char const* const silentFunctions[] = {"_ZNSo", "basic_stringbuf", "Diagnostics12AppendReport",
                                       "Diagnostics5Trace", "ElementImplD"};

_Unwind_Reason_Code LookForSilence(_Unwind_Context* context, void* given) {
    Dl_info function;
    void const* const address = reinterpret_cast<void const*>(_Unwind_GetIP(context) - 1);
    bool const isNamed = dladdr(address, &function) != 0 && function.dli_sname != nullptr;
    bool const isSilent =
        isNamed &&
        std::any_of(std::begin(silentFunctions), std::end(silentFunctions), [&](char const* part) {
            return std::strstr(function.dli_sname, part) != nullptr;
        });
    *static_cast<bool*>(given) = isSilent;
    return isSilent ? _URC_END_OF_STACK : _URC_NO_REASON;
}

bool MayFailInSilence() {
    bool isSilent = false;
    _Unwind_Backtrace(LookForSilence, &isSilent);
    return isSilent;
}

// Counts one allocation of the library's, and tells whether it is one that fails.
bool FailsNow() {
    bool const fails = allowance == 0;
    if (fails && !hasFailed) {
        hasFailed = true;
        hasToTell = !MayFailInSilence();
    }
    if (allowance > 0 || (fails && kind == Failure::Once)) {
        --allowance;
    }
    return fails;
}

void Count(Head const& head, bool isTaken) {
    if (head.isLibrarys) {
        kept.blocks += isTaken ? 1 : -1;
        kept.bytes += isTaken ? head.size : -head.size;
    }
}

// Null where there is no memory.
void* Allocate(std::size_t size, std::uintptr_t caller) noexcept {
    bool const isLibrarys = IsLibrarys(caller);
    if (isLibrarys && FailsNow()) {
        return nullptr;
    }
    Head* const head = static_cast<Head*>(std::malloc(sizeof(Head) + size));
    if (head == nullptr) {
        return nullptr;
    }
    *head = {size, isLibrarys};
    Count(*head, true);
    return head + 1;
}

void Release(void* memory) noexcept {
    if (memory != nullptr) {
        Head* const head = static_cast<Head*>(memory) - 1;
        Count(*head, false);
        std::free(head);
    }
}

void* AllocateOrThrow(std::size_t size, std::uintptr_t caller) {
    void* const memory = Allocate(size, caller);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

void Watch(void const* function) {
    Dl_info object;
    if (dladdr(function, &object) != 0) {
        program = CodeAt(nullptr);
        library = CodeAt(object.dli_fbase);
    }
}

void FailBehind(long allocations, Failure failure) {
    allowance = allocations;
    kind = failure;
    hasFailed = false;
    hasToTell = false;
    thrown = nullptr;
}

void Succeed() {
    allowance = everything;
}

bool HasFailed() {
    return hasFailed;
}

bool HasToTell() {
    return hasToTell;
}

char const* WhatWasThrown() {
    return thrown;
}

Kept WhatIsKept() {
    return kept;
}

}  // namespace LibraryMemory

#define QUILLO_CALLER reinterpret_cast<std::uintptr_t>(__builtin_return_address(0))

// Takes the place of the C++ runtime's own, which it goes on to.
void abi::__cxa_throw(void* exception, std::type_info* type, void (*destructor)(void*)) {
    if (*type != typeid(std::bad_alloc) && LibraryMemory::IsLibrarys(QUILLO_CALLER)) {
        LibraryMemory::thrown = type->name();
    }
    typedef void (*Throw)(void*, std::type_info*, void (*)(void*));
    reinterpret_cast<Throw>(dlsym(RTLD_NEXT, "__cxa_throw"))(exception, type, destructor);
    __builtin_unreachable();
}

// Not inlined: the caller is who called operator new.
[[gnu::noinline]] void* operator new(std::size_t size) {
    return LibraryMemory::AllocateOrThrow(size, QUILLO_CALLER);
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
    return LibraryMemory::AllocateOrThrow(size, QUILLO_CALLER);
}
[[gnu::noinline]] void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return LibraryMemory::Allocate(size, QUILLO_CALLER);
}
[[gnu::noinline]] void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return LibraryMemory::Allocate(size, QUILLO_CALLER);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    LibraryMemory::Release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory) noexcept {
    LibraryMemory::Release(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    LibraryMemory::Release(memory);
}
[[gnu::noinline]] void operator delete[](void* memory, std::size_t) noexcept {
    LibraryMemory::Release(memory);
}
