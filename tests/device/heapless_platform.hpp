// A platform that takes no memory of its own, so that every allocation of a test is the library's.
#ifndef QUILLO_TESTS_HEAPLESS_PLATFORM_HPP
#define QUILLO_TESTS_HEAPLESS_PLATFORM_HPP

struct HeaplessPlatform {
    // Attribute service and translation service.
    char const* answer = "";
    int initializeResult = 0;
    int frees = 0;  // the calls of loareq_free

    // Configuration store: a read writes `flag` when `writesFlag`, and gives `configResult` like
    // every other call.
    int configResult = 0;
    int flag = 0;
    bool writesFlag = true;
    int updates = 0;  // the calls of ConfigUpdate

    // Device log.
    int logEntries = 0;
    char lastMessage[400] = "";
};

// The platform of this process.
HeaplessPlatform& Heapless();

#endif
