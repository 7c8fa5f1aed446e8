// The translation service's answers to `Trans_LangExists`, which need not be 1. The linker puts
// the function below in its place.
#include "text/uri_args_fixture.hpp"

using namespace Quillo;

namespace {

int existsAnswer = 0;

using LanguageCodesTest = UriArgsFixture;

TEST_F(LanguageCodesTest, ALanguageIsKnownUnlessTheAnswerIsZero) {
    struct Row {
        int answer;
        char const* language;
    };
    for (Row const& row :
         {Row{0, "en"}, Row{1, "de"}, Row{2, "de"}, Row{-1, "de"}, Row{256, "de"}}) {
        existsAnswer = row.answer;
        Platform().languageAnswer = "de-de-1996";
        EXPECT_EQ(Args(nullptr)["LANGUAGE"], row.language) << row.answer;
    }
}

}  // namespace

extern "C" int __wrap_Trans_LangExists(char const*);

extern "C" int __wrap_Trans_LangExists(char const*) {
    return existsAnswer;
}
