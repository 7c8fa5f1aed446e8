// Every page in every language, whole.
#include <gtest/gtest.h>

#include <tuple>

#include "sample_page_test.hpp"

namespace {

class SamplePageGoldenTest
    : public SamplePageTest,
      public ::testing::WithParamInterface<std::tuple<std::string, std::string>> {};

// What this program was built with stands in a page, and is not the same everywhere.
std::string WithoutBuild(std::string const& page) {
#if defined(__clang__)
    std::string const compiler = "Clang " __clang_version__;
#else
    std::string const compiler = "GCC " __VERSION__;
#endif
    return Replaced(Replaced(page, "<bdi>" + compiler + "</bdi>", "<bdi>COMPILER</bdi>"),
                    "<bdi>" QUILLO_VERSION "</bdi>", "<bdi>VERSION</bdi>");
}

TEST_P(SamplePageGoldenTest, IsWrittenAsItHasToBe) {
    auto const& [name, catalog] = GetParam();
    Speak(catalog);
    ExpectGolden(WithoutBuild(Written(name)),
                 "page_" + name + "_" + catalog.substr(0, 2) + ".html");
}

TEST_P(SamplePageGoldenTest, LeavesNothingInTheLogButTheTraceOfTheRequest) {
    auto const& [name, catalog] = GetParam();
    Speak(catalog);
    Written(name);
    for (LogEntry const& entry : Platform().log) {
        EXPECT_EQ(entry.file, "src/text/uri_args.cpp") << entry.message;
    }
}

std::string NameOf(::testing::TestParamInfo<SamplePageGoldenTest::ParamType> const& info) {
    return std::get<0>(info.param) + "_" + std::get<1>(info.param).substr(0, 2);
}

INSTANTIATE_TEST_SUITE_P(Pages, SamplePageGoldenTest,
                         ::testing::Combine(::testing::Values("status", "network", "processes",
                                                              "storage", "log", "settings",
                                                              "language", "about", "widgets"),
                                            ::testing::Values("en-us", "de-de", "ar-eg")),
                         NameOf);

using NetworkTabsGoldenTest = SamplePageTest;

TEST_F(NetworkTabsGoldenTest, TheSecondTabIsCurrentInArabic) {
    Speak("ar-eg");
    ExpectGolden(Written("network", "view=traffic"), "page_network_traffic_ar.html");
}

using StatusValuesGoldenTest = SamplePageTest;

TEST_F(StatusValuesGoldenTest, TheValuesAreWrittenAlone) {
    Speak("de-de");
    std::string const values = Written("status", "part=values");
    ExpectGolden(values, "values_status_de.html");
    EXPECT_NE(Written("status").find(values), std::string::npos);
}

}  // namespace
