#include <cstdint>
#include <cstring>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

class UriArgsTest : public PageTest {
protected:
    UriArgsTest() : request() { Platform().languageAnswer = "en-us"; }

    UriArgs Args(char const* text, UriArgs const& defaults = UriArgs()) {
        request.uriArgs = text;
        return GetUriArgs(request, defaults);
    }

    std::string Address() const {
        return std::to_string(reinterpret_cast<std::uintptr_t>(request.uriArgs));
    }

    ZOV_AppData request;
};

TEST_F(UriArgsTest, ARequestWithoutArgumentsGivesTheDefaultsAndTheLanguage) {
    std::strcpy(request.preferredLang, "en");
    EXPECT_EQ(Args(nullptr, {{"a", "1"}}), (UriArgs{{"LANGUAGE", "en"}, {"a", "1"}}));
    EXPECT_EQ(DebugMessages(), (Texts{"LOGINFO: udata.preferredLang = en , should not empty",
                                      "LOGINFO: In GetUriArgs, l_preferredLang = en-us , ",
                                      "uriArgs = 0", "LANGUAGE = en"}));
}

TEST_F(UriArgsTest, EverythingItFindsIsTracedInThisOrder) {
    Args("a=%41+b&flag&c=%2B");
    std::string const file = "src/text/uri_args.cpp";
    Texts lines;
    for (LogEntry const& entry : Platform().log) {
        EXPECT_EQ(entry.level, "info");
        EXPECT_EQ(entry.file, file);
        std::string const prefix = "At " + file + ":" + std::to_string(entry.line) + ": ";
        bool const isTrace = entry.format == "%s";
        lines.push_back(isTrace ? entry.message.substr(prefix.size()) : entry.message);
        if (isTrace) {
            EXPECT_EQ(entry.message.substr(0, prefix.size()), prefix);
        }
    }
    EXPECT_EQ(lines, (Texts{"udata.preferredLang =  , should not empty",
                            "In GetUriArgs, l_preferredLang = en-us , ", "uriArgs = " + Address(),
                            "LANGUAGE = en", "uriArgs = {a=%41+b&flag&c=%2B}", "{a} = {A b}",
                            "** Skipping invalid arg: flag", "{c} = { }"}));
    EXPECT_EQ(DebugLines().size(), lines.size());
    EXPECT_EQ(Platform().log[0].format, "udata.preferredLang = %s , should not empty");
    EXPECT_EQ(Platform().log[1].format, "In %s, l_preferredLang = %s , ");
}

TEST_F(UriArgsTest, ArgumentsAreReadDecodedAndSetOverTheDefaults) {
    struct Row {
        char const* text;
        UriArgs args;  // besides LANGUAGE
        Texts skipped;
    };
    for (Row const& row : std::vector<Row>{{"", {}, {}},
                                           {"a=1", {{"a", "1"}}, {}},
                                           {"a=1&b=2", {{"a", "1"}, {"b", "2"}}, {}},
                                           {"a=1&a=2", {{"a", "2"}}, {}},
                                           {"a=b=c", {{"a", "b=c"}}, {}},
                                           {"=v", {{"", "v"}}, {}},
                                           {"a=", {{"a", ""}}, {}},
                                           {"a%20b=c%20d", {{"a%20b", "c d"}}, {}},
                                           {"a=1+2", {{"a", "1 2"}}, {}},
                                           {"a=1&", {{"a", "1"}}, {}},
                                           {"flag", {}, {"flag"}},
                                           {"&a=1", {{"a", "1"}}, {""}},
                                           {"a=1&&b=2", {{"a", "1"}, {"b", "2"}}, {""}},
                                           {"x&y&a=1&z", {{"a", "1"}}, {"x", "y", "z"}},
                                           {"a=%zz&b=1", {{"a", ""}, {"b", "1"}}, {}},
                                           {"a=%u00&41=b", {{"a", "\x04"}, {"41", "b"}}, {}}}) {
        Platform() = RecordingPlatform();
        Platform().languageAnswer = "en-us";
        debugMsgs = Div();
        UriArgs expected = row.args;
        expected["LANGUAGE"] = "en";
        EXPECT_EQ(Args(row.text), expected) << row.text;
        Texts skipped;
        for (std::string const& message : DebugMessages()) {
            std::string const start = "** Skipping invalid arg: ";
            if (message.compare(0, start.size(), start) == 0) {
                skipped.push_back(message.substr(start.size()));
            }
        }
        EXPECT_EQ(skipped, row.skipped) << row.text;
    }
}

TEST_F(UriArgsTest, AnEncodedPlusBecomesABlankToo) {
    EXPECT_EQ(Args("c=%2B")["c"], " ");
}

TEST_F(UriArgsTest, ALanguageAmongDefaultsOrArgumentsWins) {
    EXPECT_EQ(Args(nullptr, {{"LANGUAGE", "fr"}})["LANGUAGE"], "fr");
    EXPECT_EQ(Args("LANGUAGE=de", {{"LANGUAGE", "fr"}})["LANGUAGE"], "de");
    EXPECT_EQ(Args("LANGUAGE=de")["LANGUAGE"], "de");
    EXPECT_STREQ(g_language, "en");
    EXPECT_EQ(Args("a=2", {{"a", "1"}})["a"], "2");
}

std::string const refused = "force: In GetUriArgs, preferred lang was NULL, set default = en-us";

std::string TooLong(std::string const& name) {
    return "force: In GetUriArgs, langName is too long, set default = " + name;
}

std::string Checking(std::string const& name) {
    return "warn: Checking for language: [" + name.substr(0, 2) + "], [" + name +
           "], len=" + std::to_string(name.size());
}

TEST_F(UriArgsTest, TheLanguageIsChosenFromTheServicesAnswer) {
    struct Row {
        char const* answer;
        char const* known;  // a code that the service knows
        std::string language;
        std::string chosen;
        Texts entries;  // between the two info entries that are always made
    };
    for (Row const& row : std::vector<Row>{
             {nullptr, "", "en", "en-us", {refused}},
             {"", "", "en", "en-us", {refused}},
             {"-", "", "en", "en-us", {refused}},
             {"-----", "", "en", "en-us", {refused}},
             {"en", "", "en", "en", {}},
             {"en-us", "", "en", "en-us", {}},
             {"de-de", "", "de", "de-de", {}},
             {"-ar", "", "ar", "-ar", {}},
             {"abcde", "", "abcde", "abcde", {}},
             {"de-de-1996", "de", "de", "de-de", {Checking("de-de-1996"), TooLong("de-de")}},
             {"german", "ge", "germa", "germa", {Checking("german"), TooLong("germa")}},
             {"xx-yyy", "de", "en", "en-us", {Checking("xx-yyy"), TooLong("en-us")}},
             {"-----x", "--", "en", "en-us", {Checking("-----x"), TooLong("-----"), refused}}}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        if (row.answer != nullptr) {
            Platform().languageAnswer = row.answer;
        }
        Platform().knownLanguages[row.known] = true;
        EXPECT_EQ(Args(nullptr)["LANGUAGE"], row.language);
        EXPECT_STREQ(g_language, row.language.c_str());
        Texts expected = {"info: udata.preferredLang =  , should not empty"};
        expected.insert(expected.end(), row.entries.begin(), row.entries.end());
        expected.push_back("info: In GetUriArgs, l_preferredLang = " + row.chosen + " , ");
        Texts messages = Platform().Messages();
        messages.resize(messages.size() - 2);  // the two traces
        EXPECT_EQ(messages, expected);
        // Entries at the forced level have no line of their own in the page.
        std::size_t forced = 0;
        for (std::string const& message : messages) {
            forced += message.compare(0, 6, "force:") == 0 ? 1U : 0U;
        }
        EXPECT_EQ(DebugLines().size(), Platform().log.size() - forced);
    }
}

TEST_F(UriArgsTest, TheFormatsOfTheLanguageChoiceAreKept) {
    Platform().languageAnswer = "-----x";
    Platform().knownLanguages["--"] = true;
    Args(nullptr);
    EXPECT_EQ(Platform().log.at(1).format, "Checking for language: [%s], [%s], len=%d");
    EXPECT_EQ(Platform().log.at(2).format, "In %s, langName is too long, set default = %s");
    EXPECT_EQ(Platform().log.at(3).format, "In %s, preferred lang was NULL, set default = %s");
}

TEST_F(UriArgsTest, TheServiceIsAskedForTheClientsLanguageAndThenForTheCode) {
    std::strcpy(request.preferredLang, "de-AT;q=1");
    Platform().languageAnswer = "de-at-1996";
    Args(nullptr);
    Texts calls;
    for (std::string const& line : Platform().trace) {
        if (line.compare(0, 4, "log ") != 0) {
            calls.push_back(line);
        }
    }
    EXPECT_EQ(calls, (Texts{"HTTP_Extension_Translation_Lang de-AT;q=1", "Trans_LangExists de"}));
}

TEST_F(UriArgsTest, TheTokenizerDamagesTheServicesOwnText) {
    Args(nullptr);
    EXPECT_EQ(*Platform().languageAnswer, std::string("en\0us", 5));
    EXPECT_EQ(g_language, Platform().languageAnswer->data()) << "not a copy";
}

TEST_F(UriArgsTest, ADefaultLanguageOutlivesTheServicesText) {
    Platform().languageAnswer.reset();
    Args(nullptr);
    Platform() = RecordingPlatform();
    EXPECT_STREQ(g_language, "en");
}

}  // namespace
