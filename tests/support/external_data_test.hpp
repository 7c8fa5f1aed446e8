// Tests over texts that nobody of this project wrote.
#ifndef QUILLO_TESTS_SUPPORT_EXTERNAL_DATA_TEST_HPP
#define QUILLO_TESTS_SUPPORT_EXTERNAL_DATA_TEST_HPP

#include <algorithm>
#include <ostream>

#include "support/external_texts.hpp"
#include "support/page_test.hpp"

// A folder of test data, the ending of the files that are read, and fewer texts than it holds.
struct ExternalSource {
    char const* folder;
    char const* ending;
    std::size_t least;
};

// A source in a failure's message; without it GoogleTest shows the bytes of the pointers.
inline void PrintTo(ExternalSource const& source, std::ostream* out) {
    *out << source.folder << "/*" << source.ending;
}

class ExternalDataTest : public PageTest, public ::testing::WithParamInterface<ExternalSource> {
public:
    // A source in a test's name.
    static std::string Name(::testing::TestParamInfo<ExternalSource> const& source) {
        std::string name = std::string(source.param.folder) + (source.param.ending + 1);
        name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
        return name;
    }

protected:
    // Calls `check` for every text, nothing having been reported; skips the test where there is
    // none.
    template <class Check>
    void ForEachText(Check const& check) {
        std::vector<std::string> const texts = ExternalTexts(GetParam().folder, GetParam().ending);
        if (texts.empty()) {
            GTEST_SKIP() << "no test data in " << QUILLO_TEST_DATA << "/" << GetParam().folder
                         << "; the CMake variable QUILLO_TEST_DATA names their folder";
        }
        EXPECT_GE(texts.size(), GetParam().least);
        for (std::string const& text : texts) {
            SCOPED_TRACE(text);
            Platform().log.clear();
            Platform().trace.clear();
            Quillo::debugMsgs = Quillo::Div();
            check(text);
        }
    }
};

#endif
