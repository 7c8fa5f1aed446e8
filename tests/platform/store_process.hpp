// Processes that use the configuration store on command, so that a test settles who acts when.
#ifndef QUILLO_TESTS_PLATFORM_STORE_PROCESS_HPP
#define QUILLO_TESTS_PLATFORM_STORE_PROCESS_HPP

#include <string>

// The line between the test and one process.
class Line {
public:
    Line();
    Line(Line const&) = delete;
    Line& operator=(Line const&) = delete;
    ~Line();

    // Says `command` to the other side and gives its answer: "", when it is gone.
    std::string Ask(std::string const& command) const;

    // The process's side: does what it is told, until it is told to exit or the test is gone.
    //
    //     read           the value of the setting x
    //     set VALUE      Cfg_SetAttrValue, update VALUE  ConfigUpdate: the status
    //     run NAME       SetServiceRun
    //     fork           makes a process, which obeys the line `next`
    [[noreturn]] void Obey(Line* next);

    // Leaves the line to the other processes.
    void LeaveToProcess();
    void Leave();

private:
    std::string Receive(int end) const;

    int ends_[2];  // the test's and the process's
};

// A process, and, once it was told "fork", the one that was forked from it.
class StoreProcesses {
public:
    StoreProcesses();
    StoreProcesses(StoreProcesses const&) = delete;
    StoreProcesses& operator=(StoreProcesses const&) = delete;
    ~StoreProcesses();  // both have ended

    Line parent;
    Line child;

private:
    int pid_;
};

#endif
