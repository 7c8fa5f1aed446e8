// A request whose losses are noticed: what a target that captures answers checks behind each.
#ifndef QUILLO_FUZZ_REQUEST_HPP
#define QUILLO_FUZZ_REQUEST_HPP

#include <unistd.h>

#include <cstdio>

#include "library.hpp"
#include "oracle.hpp"

class WatchedRequest {
public:
    WatchedRequest() : app(), serverOut(Nowhere()), firstFree(FirstFree()) { app.out = serverOut; }

    // To be called when what worked on the request is gone.
    void CheckIsLeftAlone() const {
        Expect(app.out == serverOut, "the request's output is back in its place");
        ExpectEqual(FirstFree(), firstFree, "no descriptor is left open");
    }

    ZOV_AppData app;

private:
    static std::FILE* Nowhere() {
        static std::FILE* const nowhere = std::fopen("/dev/null", "we");
        return nowhere;
    }

    // The descriptor that would be opened next.
    static int FirstFree() {
        int const fd = dup(fileno(Nowhere()));
        close(fd);
        return fd;
    }

    std::FILE* serverOut;
    int firstFree;
};

// The calls of the attribute service and of get-functions, in order.
inline std::vector<std::string> ServiceCalls() {
    std::vector<std::string> calls;
    for (std::string const& line : Platform().trace) {
        if (line.compare(0, 8, "loareq_s") == 0 || line.compare(0, 7, "format_") == 0 ||
            line.compare(0, 5, "HTTP_") == 0 || line == "loareq_initialize" ||
            line == "loareq_free") {
            calls.push_back(line);
        }
    }
    return calls;
}

#endif
