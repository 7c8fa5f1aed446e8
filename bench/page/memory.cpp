// What a page takes of the heap, by every contender but the floor: lines of a name and a number.
//
//     ROWS/build/CONTENDER    allocations a node while the page is built
//     ROWS/write/CONTENDER    allocations a node while it is written to memory
//     ROWS/peak/CONTENDER     bytes at most in use, the page's text included
//
// The calls of malloc and its like are counted, from whatever library they come.
#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "page/contender.hpp"

namespace {

// One thread runs.
struct Heap {
    long blocks;  // ever allocated
    long bytes;   // in use
    long peak;    // of `bytes`
};
Heap heap = {};

long SizeOf(void* block) {
    return static_cast<long>(malloc_usable_size(block));
}

void* Noted(void* block) {
    if (block != nullptr) {
        ++heap.blocks;
        heap.bytes += SizeOf(block);
        heap.peak = std::max(heap.peak, heap.bytes);
    }
    return block;
}

}  // namespace

extern "C" {
// The C library's own, by the names that they keep when they are replaced.
void* LibcMalloc(std::size_t size) __asm__("__libc_malloc");
void* LibcCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void* LibcRealloc(void* block, std::size_t size) __asm__("__libc_realloc");
void* LibcMemalign(std::size_t alignment, std::size_t size) __asm__("__libc_memalign");
void LibcFree(void* block) __asm__("__libc_free");

void* malloc(std::size_t size) noexcept {
    return Noted(LibcMalloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return Noted(LibcCalloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    long const former = SizeOf(block);
    void* const moved = LibcRealloc(block, size);
    if (moved != nullptr || size == 0) {
        heap.bytes -= former;
    }
    return Noted(moved);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return Noted(LibcMemalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void* block) noexcept {
    heap.bytes -= SizeOf(block);
    LibcFree(block);
}
}

using namespace Bench;

namespace {

void Print(std::size_t rows, char const* what, Entry const& entry, double figure) {
    std::printf("%zu/%s/%s\t%.4f\n", rows, what, entry.name, figure);
}

// The first page fills what a contender keeps; the second one's allocations count.
void PrintPage(Entry const& entry, PageData const& data) {
    long const before = heap.bytes;
    heap.peak = before;
    std::unique_ptr<Contender> const contender = entry.make();
    contender->Build(data);
    contender->Write();
    contender->Destroy();

    long const begin = heap.blocks;
    contender->Build(data);
    long const built = heap.blocks;
    contender->Write();
    long const written = heap.blocks;
    contender->Destroy();

    double const nodes = CountNodes(data);
    if (entry.kind == Kind::Tree) {
        Print(data.rows.size(), "build", entry, static_cast<double>(built - begin) / nodes);
    }
    Print(data.rows.size(), "write", entry, static_cast<double>(written - built) / nodes);
    Print(data.rows.size(), "peak", entry, static_cast<double>(heap.peak - before));
}

}  // namespace

int main() {
    for (int const rows : {100, 1000, 10000}) {
        PageData const data = MakePageData(rows);
        for (Entry const& entry : Entries()) {
            if (entry.kind != Kind::Floor) {
                PrintPage(entry, data);
            }
        }
    }
    return 0;
}
