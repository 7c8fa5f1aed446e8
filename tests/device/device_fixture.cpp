#include "device/device_fixture.hpp"

#include <cstdlib>

#include "device/open_descriptors.hpp"

namespace {

std::string LevelWord(std::string const& level) {
    if (level == "error") {
        return "LOGERROR: ";
    }
    return level == "warn" ? "LOGWARN: " : "LOGINFO: ";
}

}  // namespace

bool operator==(Report const& left, Report const& right) {
    return left.level == right.level && left.file == right.file && left.format == right.format &&
           left.message == right.message;
}

std::ostream& operator<<(std::ostream& out, Report const& report) {
    return out << report.level << " of " << report.file << ", \"" << report.format << "\": \""
               << report.message << "\"";
}

std::vector<Report> Reports() {
    std::vector<Report> reports;
    Lines lines;
    for (LogEntry const& entry : Platform().log) {
        reports.push_back({entry.level, entry.file, entry.format, entry.message});
        lines.push_back("At " + entry.file + ":" + std::to_string(entry.line) + ": " +
                        LevelWord(entry.level) + entry.message);
    }
    EXPECT_EQ(DebugLines(), lines);
    return reports;
}

DeviceTest::DeviceTest()
    : serverText(nullptr),
      serverSize(0),
      serverOut(open_memstream(&serverText, &serverSize)),
      app(),
      before(OpenDescriptors()) {
    app.out = serverOut;
}

DeviceTest::~DeviceTest() {
    std::fclose(serverOut);
    std::free(serverText);
}

void DeviceTest::TearDown() {
    EXPECT_EQ(app.out, serverOut) << holdsWithoutMemory;
    EXPECT_EQ(std::fflush(serverOut), 0);
    EXPECT_EQ(std::string(serverText, serverSize), "") << holdsWithoutMemory;
    EXPECT_EQ(Opened(), std::set<int>()) << holdsWithoutMemory;
}

std::set<int> DeviceTest::Opened() const {
    return OpenedSince(before);
}

std::string Pattern(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += std::to_string(i) + ",";
    }
    text.resize(size);
    return text;
}
