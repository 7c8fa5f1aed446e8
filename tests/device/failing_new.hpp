// Allocations that fail on demand. An executable that links failing_new.cpp takes its memory
// through it.
#ifndef QUILLO_TESTS_FAILING_NEW_HPP
#define QUILLO_TESTS_FAILING_NEW_HPP

// As long as it lives the `nth` allocation from its making, counted from 1, throws std::bad_alloc,
// and with `andAllAfter` every later one as well.
class FailingNew {
public:
    FailingNew(int nth, bool andAllAfter);
    FailingNew(FailingNew const&) = delete;
    FailingNew& operator=(FailingNew const&) = delete;
    ~FailingNew();

    // Whether any allocation has failed.
    bool HasFailed() const;
};

#endif
