// What the tests of device data share: a request record whose every loss is noticed, and the
// reports of the library in full.
#ifndef QUILLO_TESTS_DEVICE_FIXTURE_HPP
#define QUILLO_TESTS_DEVICE_FIXTURE_HPP

#include <cstdio>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "support/page_test.hpp"

typedef std::vector<std::string> Lines;

struct Report {
    std::string level;  // error, warn or info
    std::string file;
    std::string format;
    std::string message;
};

bool operator==(Report const& left, Report const& right);
std::ostream& operator<<(std::ostream& out, Report const& report);

// The entries of the device log. Fails the test when `debugMsgs` does not hold exactly their lines.
std::vector<Report> Reports();

// After each test the record's output stream is the web server's own, which got nothing, and no
// descriptor is left open.
class DeviceTest : public PageTest {
protected:
    DeviceTest();
    ~DeviceTest() override;
    void TearDown() override;

    // The descriptors opened since the test began.
    std::set<int> Opened() const;

private:
    char* serverText;
    std::size_t serverSize;

protected:
    std::FILE* const serverOut;
    ZOV_AppData app;

private:
    std::set<int> const before;
};

// Text of `size` bytes without a NUL, in which no two neighbouring chunks are alike.
std::string Pattern(std::size_t size);

#endif
