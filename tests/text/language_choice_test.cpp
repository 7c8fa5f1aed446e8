#include "support/guarded_text.hpp"
#include "text/digit_grouping.hpp"
#include "text/uri_args_fixture.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using LanguageChoiceTest = UriArgsFixture;

std::string const entry = " src/text/uri_args.cpp: ";
std::string const refused =
    "log force" + entry + "In GetUriArgs, preferred lang was NULL, set default = en-us";

std::string Checking(std::string const& code, std::string const& name, int length) {
    return "log warn" + entry + "Checking for language: [" + code + "], [" + name +
           "], len=" + std::to_string(length);
}

std::string Exists(std::string const& code) {
    return "Trans_LangExists " + code;
}

std::string TooLong(std::string const& name) {
    return "log force" + entry + "In GetUriArgs, langName is too long, set default = " + name;
}

struct Row {
    char const* answer;    // the translation service's
    std::string known;     // the one code that it knows
    std::string chosen;    // the name
    std::string language;  // and its code
    Texts done;            // between the service's answer and the report of the choice
};

std::vector<Row> const rows = {
    {nullptr, "", "en-us", "en", {refused}},
    {"", "", "en-us", "en", {refused}},
    {"-", "", "en-us", "en", {refused}},
    {"--", "--", "en-us", "en", {refused}},
    {"-----", "--", "en-us", "en", {refused}},
    {"e", "", "e", "e", {}},
    {"en", "", "en", "en", {}},
    {"AR", "", "AR", "AR", {}},
    {"en-us", "", "en-us", "en", {}},
    {"de-de", "", "de-de", "de", {}},
    {"-ar", "", "-ar", "ar", {}},
    {"--a-b", "", "--a-b", "a", {}},
    {"de--", "", "de--", "de", {}},
    {"abcde", "", "abcde", "abcde", {}},
    {"e us", "", "e us", "e us", {}},
    {"german",
     "ge",
     "germa",
     "germa",
     {Checking("ge", "german", 6), Exists("ge"), TooLong("germa")}},
    {"german", "de", "en-us", "en", {Checking("ge", "german", 6), Exists("ge"), TooLong("en-us")}},
    {"de-de-1996",
     "de",
     "de-de",
     "de",
     {Checking("de", "de-de-1996", 10), Exists("de"), TooLong("de-de")}},
    {"de-de-1996",
     "",
     "en-us",
     "en",
     {Checking("de", "de-de-1996", 10), Exists("de"), TooLong("en-us")}},
    {"d-e-f-g", "d-", "d-e-f", "d", {Checking("d-", "d-e-f-g", 7), Exists("d-"), TooLong("d-e-f")}},
    {"----a-b", "--", "----a", "a", {Checking("--", "----a-b", 7), Exists("--"), TooLong("----a")}},
    {"-----x",
     "--",
     "en-us",
     "en",
     {Checking("--", "-----x", 6), Exists("--"), TooLong("-----"), refused}},
    {"-----x", "", "en-us", "en", {Checking("--", "-----x", 6), Exists("--"), TooLong("en-us")}},
    {"------",
     "--",
     "en-us",
     "en",
     {Checking("--", "------", 6), Exists("--"), TooLong("-----"), refused}}};

TEST_F(LanguageChoiceTest, TheLanguageIsChosenFromTheServicesAnswer) {
    for (Row const& row : rows) {
        SCOPED_TRACE(Cstr(row.answer));
        Reset();
        Platform().languageAnswer.reset();
        if (row.answer != nullptr) {
            Platform().languageAnswer = row.answer;
        }
        Platform().knownLanguages[row.known] = true;
        EXPECT_EQ(Args(nullptr), (UriArgs{{"LANGUAGE", row.language}}));
        EXPECT_STREQ(g_language, row.language.c_str());

        std::string const trace = "log info" + entry + "At src/text/uri_args.cpp:LINE: ";
        Texts done = {"log info" + entry + "udata.preferredLang = xx , should not empty",
                      "HTTP_Extension_Translation_Lang xx"};
        done.insert(done.end(), row.done.begin(), row.done.end());
        done.push_back("log info" + entry + "In GetUriArgs, l_preferredLang = " + row.chosen +
                       " , ");
        done.push_back(trace + "uriArgs = 0");
        done.push_back(trace + "LANGUAGE = " + row.language);
        EXPECT_EQ(Done(), done);
        EXPECT_EQ(DebugLines(), LinesOfLog());
    }
}

TEST_F(LanguageChoiceTest, EntriesAtTheForcedLevelHaveNoDebugLine) {
    Platform().languageAnswer = "-----x";
    Platform().knownLanguages["--"] = true;
    Args(nullptr);
    EXPECT_EQ(DebugMessages(), (Texts{"LOGINFO: udata.preferredLang = xx , should not empty",
                                      "LOGWARN: Checking for language: [--], [-----x], len=6",
                                      "LOGINFO: In GetUriArgs, l_preferredLang = en-us , ",
                                      "uriArgs = 0", "LANGUAGE = en"}));
    ASSERT_EQ(Platform().log.size(), 7U);
    EXPECT_EQ(Platform().log[1].format, "Checking for language: [%s], [%s], len=%d");
    EXPECT_EQ(Platform().log[2].format, "In %s, langName is too long, set default = %s");
    EXPECT_EQ(Platform().log[2].code, logSpecForceInfo);
    EXPECT_EQ(Platform().log[3].format, "In %s, preferred lang was NULL, set default = %s");
    EXPECT_EQ(Platform().log[3].code, logSpecForceInfo);
}

TEST_F(LanguageChoiceTest, ALongNameIsReportedWithItsLengthUngrouped) {
    DigitGrouping const grouping;
    std::string const name = "de-" + std::string(1231, 'x');
    Platform().languageAnswer = name;
    Platform().knownLanguages["de"] = true;
    EXPECT_EQ(Args(nullptr)["LANGUAGE"], "de");
    EXPECT_EQ(Platform().log.at(1).message,
              "Checking for language: [de], [" + name + "], len=1234");
    EXPECT_EQ(Platform().log.at(2).message,
              "In GetUriArgs, langName is too long, set default = de-xx");
}

TEST_F(LanguageChoiceTest, TheServiceIsAskedForTheWholeTextOfTheClient) {
    std::string const wanted = "de-AT;q=1,*;q=" + std::string(49, '0');
    std::strcpy(request.preferredLang, wanted.c_str());
    Args(nullptr);
    EXPECT_EQ(Done().at(1), "HTTP_Extension_Translation_Lang " + wanted);
    EXPECT_EQ(Platform().log.at(0).message,
              "udata.preferredLang = " + wanted + " , should not empty");
}

TEST_F(LanguageChoiceTest, AnEmptyWishIsReportedLikeAnyOther) {
    request.preferredLang[0] = '\0';
    Args(nullptr);
    EXPECT_EQ(Platform().log.at(0).message, "udata.preferredLang =  , should not empty");
}

TEST_F(LanguageChoiceTest, TheTokenizerDamagesTheServicesOwnText) {
    Args(nullptr);
    EXPECT_EQ(*Platform().languageAnswer, std::string("en\0us", 5));
    EXPECT_EQ(g_language, Platform().languageAnswer->data()) << "not a copy";

    Platform().languageAnswer = "-a-b-";
    Args(nullptr);
    EXPECT_EQ(*Platform().languageAnswer, std::string("-a\0b-", 5)) << "one '-' alone";
    EXPECT_EQ(g_language, Platform().languageAnswer->data() + 1);
}

TEST_F(LanguageChoiceTest, ATextThatIsNotUsedIsLeftAlone) {
    for (char const* const answer : {"de-de-1996", "-----", "-----x"}) {
        Platform().languageAnswer = answer;
        Platform().knownLanguages = {{"de", true}, {"--", true}};
        Args(nullptr);
        EXPECT_EQ(*Platform().languageAnswer, answer);
    }
}

TEST_F(LanguageChoiceTest, ADefaultOrShortenedLanguageOutlivesTheServicesText) {
    Platform().languageAnswer.reset();
    Args(nullptr);
    Platform() = RecordingPlatform();
    EXPECT_STREQ(g_language, "en");
    Platform().languageAnswer = "de-de-1996";
    Platform().knownLanguages["de"] = true;
    Args(nullptr);
    Platform() = RecordingPlatform();
    EXPECT_STREQ(g_language, "de");
}

TEST_F(LanguageChoiceTest, NothingOfAnEarlierChoiceIsLeftInALaterOne) {
    Platform().languageAnswer = "abcdef";
    Platform().knownLanguages["ab"] = true;
    EXPECT_EQ(Args(nullptr)["LANGUAGE"], "abcde");
    Platform().languageAnswer.reset();
    EXPECT_EQ(Args(nullptr)["LANGUAGE"], "en");
    EXPECT_EQ(Args(nullptr)["LANGUAGE"], "en") << "the buffer is written anew";
}

TEST_F(LanguageChoiceTest, NoLanguageIsChosenBeforeTheFirstRequest) {
    EXPECT_EQ(g_language, nullptr);
}

}  // namespace
