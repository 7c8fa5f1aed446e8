// A device whose data is fixed, for tests of the sample pages.
#ifndef QUILLO_TESTS_SAMPLE_PAGE_TEST_HPP
#define QUILLO_TESTS_SAMPLE_PAGE_TEST_HPP

#include <page.hpp>
#include <string>
#include <vector>

#include "support/page_test.hpp"

class SamplePageTest : public PageTest {
protected:
    // In English, whose catalog has every phrase as it is asked for.
    SamplePageTest();
    ~SamplePageTest() override;

    // From now on phrases are those of the catalog `catalog`: "de-de". A phrase that it does not
    // have fails the test.
    void Speak(std::string const& catalog);

    // A request with the arguments as they stand in a URL.
    QuilloServer::Request Asked(char const* arguments = nullptr);

    // What the page `name` writes for a request.
    std::string Written(std::string const& name, QuilloServer::Request& request);
    std::string Written(std::string const& name, char const* arguments = nullptr);

    ZOV_AppData app;
};

// `text` with `written` in the place of each `sought`.
std::string Replaced(std::string text, std::string const& sought, std::string const& written);

#endif
