// Runs every test of a program over and over: with the first allocation of the library failing,
// then with the second, until there is none left to fail; once with that one failure, and once with
// every allocation failing from there on.
//
// A test that runs out of memory may fail: what it asks for is not there. What must hold all the
// same is looked at after each of these runs:
//
//     the library throws nothing but std::bad_alloc, and what it throws with memory
//     a test that fails was told by std::bad_alloc, unless it was in a report, a stream or a
//     destructor that memory ran out first
//     every allocation that the library made for the test is released
//     no descriptor was left open
//     `debugMsgs` holds pairs of a text and a line break
//     what a test marks as `holdsWithoutMemory`
//     the same test passes once memory is there again
//
// A crash names the test and the allocation, and so does what takes longer than two minutes.
//
//     PROGRAM [--gtest_filter=PATTERN]
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "faults/library_memory.hpp"
#include "support/page_test.hpp"

using LibraryMemory::everything;
using LibraryMemory::Failure;
using LibraryMemory::Kept;

namespace {

constexpr unsigned patience = 120;  // seconds
constexpr char rounds[] = "3";      // of made-up input, each run for every allocation in it

// Where the words of this program go: the tests' own are dropped.
int reportFd = -1;

__attribute__((format(printf, 1, 2))) void Say(char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vdprintf(reportFd, format, arguments);
    va_end(arguments);
}

// What is being run, for the words of a crash.
pid_t self = 0;
char place[300] = "the tests with memory";

// A death test's child dies as it has to.
void OnDeath(int signal) {
    if (getpid() == self) {
        dprintf(reportFd, "FAILED: %s: %s\n", place,
                signal == SIGALRM ? "does not end" : "crashes");
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

int OpenDescriptors() {
    int count = 0;
    for (int fd = 0; fd < 64; ++fd) {
        count += fcntl(fd, F_GETFD) != -1 ? 1 : 0;
    }
    return count;
}

// A text and its line break come together.
bool HasHalfReport() {
    auto const& children = Quillo::debugMsgs.impl->children;
    for (std::size_t i = 0; i < children.size(); ++i) {
        bool const isText = dynamic_cast<Quillo::TextImpl const*>(children[i].get()) != nullptr;
        bool const isBreak = dynamic_cast<Quillo::BrImpl const*>(children[i].get()) != nullptr;
        if (i % 2 == 0 ? !isText : !isBreak) {
            return true;
        }
    }
    return children.size() % 2 != 0;
}

// What is known of one run of one test.
struct Outcome {
    bool passed = false;
    bool hasFailed = false;  // an allocation did
    bool hasToTell = false;  // of the first that did
    bool hasHalfReport = false;
    char const* thrown = nullptr;  // by the library, but for std::bad_alloc
    std::string broken;            // what must hold without memory, and does not
    std::string failures;          // of the test, all of them
    Kept kept = {0, 0};
    int descriptors = 0;
};

// The run in hand: fails what `failBehind` says, between the test's set-up and its end.
class Run : public testing::EmptyTestEventListener {
public:
    Run(long failBehindAllocations, Failure failureKind)
        : failBehind(failBehindAllocations), kind(failureKind) {}

    Outcome outcome;

    void Begin() { LibraryMemory::FailBehind(failBehind, kind); }

    // Memory is there again; the test's own objects still live.
    void End() {
        LibraryMemory::Succeed();
        outcome.hasHalfReport = outcome.hasHalfReport || HasHalfReport();
    }

private:
    void OnTestStart(testing::TestInfo const&) override { Begin(); }
    void OnTestEnd(testing::TestInfo const&) override { LibraryMemory::Succeed(); }

    void OnTestPartResult(testing::TestPartResult const& result) override {
        if (!result.failed()) {
            return;
        }
        std::string const text = result.message();
        outcome.failures += text + "\n";
        if (text.find(holdsWithoutMemory) != std::string::npos) {
            outcome.broken += text + "\n";
        }
    }

    long const failBehind;
    Failure const kind;
};

Run* current = nullptr;

void OnTestBegin() {
    current->Begin();
}

void BeforeReset() {
    current->End();
}

Outcome RunTest(std::string const& name, long failBehind, Failure kind) {
    Run run(failBehind, kind);
    current = &run;
    testing::GTEST_FLAG(filter) = name;
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    listeners.Append(&run);
    alarm(patience);
    run.outcome.passed = RUN_ALL_TESTS() == 0;
    alarm(0);
    listeners.Release(&run);
    run.outcome.hasFailed = LibraryMemory::HasFailed();
    run.outcome.hasToTell = LibraryMemory::HasToTell();
    run.outcome.thrown = LibraryMemory::WhatWasThrown();
    run.outcome.kept = LibraryMemory::WhatIsKept();
    run.outcome.descriptors = OpenDescriptors();
    return run.outcome;
}

Outcome RunWhole(std::string const& name) {
    return RunTest(name, everything, Failure::Once);
}

std::string NameOf(testing::TestInfo const& test) {
    return std::string(test.test_suite_name()) + "." + test.name();
}

// The tests that pass: all that are chosen, but for those that are skipped. False: one fails.
bool FindTests(std::vector<std::string>& names) {
    Outcome const whole = RunWhole(testing::GTEST_FLAG(filter));
    if (!whole.passed) {
        Say("FAILED: %s: %s\n", place, whole.failures.c_str());
        return false;
    }
    testing::UnitTest const& program = *testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        testing::TestSuite const& suite = *program.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j) {
            testing::TestInfo const& test = *suite.GetTestInfo(j);
            if (test.should_run() && test.result()->Passed()) {
                names.push_back(NameOf(test));
            }
        }
    }
    return true;
}

// What is wrong after a run without memory, and the run with memory behind it. `whole` is how that
// was before. Empty: nothing.
std::string Verdict(Outcome const& run, Outcome const& next, Outcome const& whole) {
    if (!run.broken.empty()) {
        return run.broken;
    }
    if (run.thrown != nullptr && run.thrown != whole.thrown) {
        return std::string("the library throws ") + run.thrown;
    }
    if (run.hasToTell && !run.passed && run.failures.find("std::bad_alloc") == std::string::npos) {
        return "memory ran out, and nobody was told:\n" + run.failures;
    }
    if (run.hasHalfReport && !whole.hasHalfReport) {
        return "a report is there in part";
    }
    if (run.kept.blocks != whole.kept.blocks || run.kept.bytes != whole.kept.bytes) {
        return "the library keeps " + std::to_string(run.kept.blocks - whole.kept.blocks) +
               " blocks of " +
               std::to_string(static_cast<long>(run.kept.bytes - whole.kept.bytes)) + " bytes";
    }
    if (run.descriptors != whole.descriptors) {
        return "descriptors are left open";
    }
    return next.passed ? "" : "with memory again, the test fails:\n" + next.failures;
}

// Runs the test with each allocation failing in turn, and returns how many that were; below 0 when
// something was wrong.
long FailEach(std::string const& name, Outcome const& whole, Failure kind) {
    for (long allocations = 0;; ++allocations) {
        std::snprintf(place, sizeof place, "%s, behind %ld allocations%s", name.c_str(),
                      allocations, kind == Failure::Once ? "" : ", from then on");
        Outcome const run = RunTest(name, allocations, kind);
        Outcome const next = RunWhole(name);
        std::string const verdict = Verdict(run, next, whole);
        if (!verdict.empty()) {
            Say("FAILED: %s: %s\n", place, verdict.c_str());
            return -1;
        }
        if (!run.hasFailed) {
            return allocations;
        }
    }
}

struct Figures {
    int tests = 0;
    long failures = 0;
    int broken = 0;
};

void Judge(std::string const& name, Figures& figures) {
    RunWhole(name);  // what is made once and kept is made here
    Outcome const whole = RunWhole(name);
    long failures = 0;
    for (Failure const kind : {Failure::Once, Failure::FromThenOn}) {
        long const count = FailEach(name, whole, kind);
        if (count < 0) {
            ++figures.broken;
            return;
        }
        failures += count;
    }
    ++figures.tests;
    figures.failures += failures;
    Say("%8ld  %s\n", failures, name.c_str());
}

void Prepare() {
    self = getpid();
    setenv("QUILLO_TEST_ROUNDS", rounds, 1);
    reportFd = dup(STDOUT_FILENO);
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
        std::perror("/dev/null");
        std::exit(2);
    }
    for (int const signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGPIPE, SIGALRM}) {
        std::signal(signal, OnDeath);
    }
    testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    PageTest::beforeReset = BeforeReset;
    PageTest::onBegin = OnTestBegin;
    LibraryMemory::Watch(reinterpret_cast<void const*>(&Quillo::EnumsUnitTest));
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    Prepare();
    std::vector<std::string> names;
    if (!FindTests(names)) {
        return 1;
    }
    Figures figures;
    for (std::string const& name : names) {
        Judge(name, figures);
    }
    Say("%d tests, %ld failures of an allocation, %d broken\n", figures.tests, figures.failures,
        figures.broken);
    if (figures.failures == 0) {
        Say("FAILED: no allocation failed\n");
    }
    return figures.broken == 0 && figures.failures != 0 ? 0 : 1;
}
