// What tests of pages share: a fixture with a fresh platform and fresh process-wide state, the HTML
// of a tree, and golden files.
#ifndef QUILLO_TESTS_PAGE_TEST_HPP
#define QUILLO_TESTS_PAGE_TEST_HPP

#include <gtest/gtest.h>

#include <quillo>
#include <string>
#include <vector>

#include "support/recording_platform.hpp"

// Each test starts with nothing recorded and nothing reported, outside debug mode, in no language.
class PageTest : public ::testing::Test {
public:
    // Called before all of that is made, at a test's beginning and at its end, and when the test
    // can begin: for who runs the tests in circumstances that its making must not notice.
    static void (*beforeReset)();
    static void (*onBegin)();

protected:
    PageTest();
    ~PageTest() override;
};

// Goes into the message of an assertion that has to hold even when memory runs out in the test.
extern char const holdsWithoutMemory[];

// The tree below `root` as HTML, written at `level` with a renderer of its own.
std::string Html(Quillo::Element const& root, int level = 0);

// The texts of `debugMsgs`. Fails the test when a text is not followed by a line break.
std::vector<std::string> DebugLines();

// The same, each from its level word on: "LOGWARN: Redundant arg x". A line without a level word
// (a trace) is given from the blank behind its line number on.
std::vector<std::string> DebugMessages();

// An element of any tag.
Quillo::Element Tag(std::string const& tag, bool isLeaf = false);

// Compares `html` with tests/golden/NAME. With QUILLO_COLLECT_GOLDEN=1 in the environment it writes
// the file instead.
void ExpectGolden(std::string const& html, std::string const& name);

#endif
