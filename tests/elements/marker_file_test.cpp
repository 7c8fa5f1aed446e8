// The debug switch. stat(2) is this program's own, so the root folder is left alone; each test is
// run in a process of its own.
#include <sys/stat.h>

#include <cerrno>
#include <quillo>
#include <sstream>

#include "support/page_test.hpp"

namespace {

bool isMarkerThere = false;
std::vector<std::string> askedFor;

}  // namespace

extern "C" int stat(char const* path, struct stat* status) noexcept {
    askedFor.emplace_back(path);
    if (!isMarkerThere) {
        errno = ENOENT;
        return -1;
    }
    *status = {};
    return 0;
}

using namespace Quillo;

namespace {

std::string IndentedBreak() {
    return Html(Br(), 1);
}

TEST(MarkerFile, NothingLooksForItBeforeIsDebugIsCalled) {
    isMarkerThere = true;
    Html(Div() << MakeNavBar({}) << MakeTabs({}, Div()));
    EXPECT_EQ(askedFor, std::vector<std::string>());
    EXPECT_FALSE(isDebugInit);
    EXPECT_EQ(IndentedBreak(), "<br >\n");
}

TEST(MarkerFile, IsLookedForOnceAndTurnsIndentingOn) {
    isDebugInit = false;
    isDebug = false;
    askedFor.clear();
    isMarkerThere = true;
    EXPECT_TRUE(IsDebug());
    EXPECT_TRUE(isDebugInit);
    EXPECT_TRUE(isDebug);
    isMarkerThere = false;
    EXPECT_TRUE(IsDebug());
    EXPECT_EQ(askedFor, (std::vector<std::string>{"/do-quillo-debug"}));
    EXPECT_EQ(IndentedBreak(), "  <br >\n");
}

TEST(MarkerFile, ThatAppearsLaterChangesNothing) {
    isDebugInit = false;
    isDebug = false;
    askedFor.clear();
    isMarkerThere = false;
    EXPECT_FALSE(IsDebug());
    EXPECT_TRUE(isDebugInit);
    isMarkerThere = true;
    EXPECT_FALSE(IsDebug());
    EXPECT_EQ(askedFor.size(), 1U);
    EXPECT_EQ(IndentedBreak(), "<br >\n");
}

}  // namespace
