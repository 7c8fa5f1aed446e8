// Loads a library and lets go of it: `load LIBRARY TIMES` does so as many times and prints the
// microseconds of CPU a time. The library's symbols are all bound, and what it sets up when it is
// loaded is set up; the platform and the C++ library are there already.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

// Whether the library could be loaded and is gone again.
bool LoadOnce(char const* library) {
    void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        std::fprintf(stderr, "load: %s\n", dlerror());
        return false;
    }
    dlclose(handle);
    if (dlopen(library, RTLD_NOW | RTLD_NOLOAD) != nullptr) {
        std::fprintf(stderr, "load: %s stays loaded, so that it cannot be loaded again\n", library);
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    long const times = argc == 3 ? std::strtol(argv[2], nullptr, 10) : 0;
    if (times <= 0) {
        std::fprintf(stderr, "usage: load LIBRARY TIMES\n");
        return 2;
    }
    std::clock_t const begin = std::clock();
    for (long i = 0; i < times; ++i) {
        if (!LoadOnce(argv[1])) {
            return 1;
        }
    }
    std::printf("%.1f\n", static_cast<double>(std::clock() - begin) * 1e6 / CLOCKS_PER_SEC /
                              static_cast<double>(times));
    return 0;
}
