// Loads a library: `load LIBRARY` does so and prints the microseconds of CPU that it took, `load`
// does not. The library's symbols are all bound, and what it sets up when it is loaded is set up;
// the platform and the C++ library are there already. Once a process, for the library stays loaded
// as long as a thread has a pool of it.
#include <dlfcn.h>

#include <cstdio>
#include <ctime>

int main(int argc, char** argv) {
    if (argc != 2) {
        return 0;
    }
    std::clock_t const begin = std::clock();
    if (dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) == nullptr) {
        std::fprintf(stderr, "load: %s\n", dlerror());
        return 1;
    }
    std::printf("%.1f\n", static_cast<double>(std::clock() - begin) * 1e6 / CLOCKS_PER_SEC);
    return 0;
}
