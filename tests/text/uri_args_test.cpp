#include "text/uri_args_fixture.hpp"

#include <algorithm>

#include "support/guarded_text.hpp"
#include "text/digit_grouping.hpp"
#include "text/sample_texts.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using UriArgsTest = UriArgsFixture;

std::string const info = "log info src/text/uri_args.cpp: ";
std::string const trace = info + "At src/text/uri_args.cpp:LINE: ";

// What is left out of an argument text, and what is taken from it, by the rules.
struct Read {
    UriArgs args;
    Texts lines;
};

Read ByTheRules(std::string const& text) {
    Read read;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const end = std::min(text.find('&', at), text.size());
        std::string const field = text.substr(at, end - at);
        std::size_t const equals = field.find('=');
        if (equals == std::string::npos) {
            read.lines.push_back("** Skipping invalid arg: " + field);
        } else {
            char const* const bound = end < text.size() ? text.c_str() + end : nullptr;
            std::string value = PcntDecode(text.c_str() + at + equals + 1, bound);
            std::replace(value.begin(), value.end(), '+', ' ');
            read.args[field.substr(0, equals)] = value;
            read.lines.push_back("{" + field.substr(0, equals) + "} = {" + value + "}");
        }
        at = end + 1;
    }
    return read;
}

TEST_F(UriArgsTest, ARequestWithoutArgumentsGivesTheDefaultsAndTheLanguage) {
    EXPECT_EQ(Args(nullptr, {{"a", "1"}}), (UriArgs{{"LANGUAGE", "en"}, {"a", "1"}}));
    EXPECT_EQ(Done(), (Texts{info + "udata.preferredLang = xx , should not empty",
                             "HTTP_Extension_Translation_Lang xx",
                             info + "In GetUriArgs, l_preferredLang = en-us , ",
                             trace + "uriArgs = 0", trace + "LANGUAGE = en"}));
    EXPECT_EQ(DebugLines(), LinesOfLog());
    EXPECT_EQ(DebugMessages(), (Texts{"LOGINFO: udata.preferredLang = xx , should not empty",
                                      "LOGINFO: In GetUriArgs, l_preferredLang = en-us , ",
                                      "uriArgs = 0", "LANGUAGE = en"}));
}

TEST_F(UriArgsTest, EverythingItFindsIsTracedInThisOrder) {
    EXPECT_EQ(Args("a=%41+b&flag&c=%2B"), (UriArgs{{"LANGUAGE", "en"}, {"a", "A b"}, {"c", " "}}));
    std::string const address = std::to_string(reinterpret_cast<std::uintptr_t>(request.uriArgs));
    EXPECT_EQ(Done(), (Texts{info + "udata.preferredLang = xx , should not empty",
                             "HTTP_Extension_Translation_Lang xx",
                             info + "In GetUriArgs, l_preferredLang = en-us , ",
                             trace + "uriArgs = " + address, trace + "LANGUAGE = en",
                             trace + "uriArgs = {a=%41+b&flag&c=%2B}", trace + "{a} = {A b}",
                             trace + "** Skipping invalid arg: flag", trace + "{c} = { }"}));
    EXPECT_EQ(DebugLines(), LinesOfLog());
}

TEST_F(UriArgsTest, AnEmptyArgumentTextIsTracedAndHasNoArguments) {
    EXPECT_EQ(Args(""), (UriArgs{{"LANGUAGE", "en"}}));
    EXPECT_EQ(Done().size(), 6U);
    EXPECT_EQ(Done().back(), trace + "uriArgs = {}");
}

TEST_F(UriArgsTest, TheAddressIsUnsignedDecimalWithoutGrouping) {
    DigitGrouping const grouping;
    char const text[] = "";
    Args(text);
    std::string const address = std::to_string(reinterpret_cast<std::uintptr_t>(text));
    EXPECT_EQ(address.find_first_not_of("0123456789"), std::string::npos);
    EXPECT_EQ(Done().at(3), trace + "uriArgs = " + address);
    EXPECT_EQ(DebugLines(), LinesOfLog());
}

TEST_F(UriArgsTest, ReportsKeepTheirFormats) {
    Args("a=1");
    Texts formats;
    for (LogEntry const& entry : Platform().log) {
        formats.push_back(entry.format);
    }
    EXPECT_EQ(formats, (Texts{"udata.preferredLang = %s , should not empty",
                              "In %s, l_preferredLang = %s , ", "%s", "%s", "%s", "%s"}));
}

TEST_F(UriArgsTest, ArgumentsAreReadDecodedAndSetOverTheDefaults) {
    struct Row {
        char const* text;
        UriArgs args;  // besides LANGUAGE
        Texts lines;   // behind the one with the text
    };
    std::string const skip = "** Skipping invalid arg: ";
    for (Row const& row : std::vector<Row>{
             {"", {}, {}},
             {"a=1", {{"a", "1"}}, {"{a} = {1}"}},
             {"a=1&b=2", {{"a", "1"}, {"b", "2"}}, {"{a} = {1}", "{b} = {2}"}},
             {"a=1&a=2", {{"a", "2"}}, {"{a} = {1}", "{a} = {2}"}},
             {"a=b=c", {{"a", "b=c"}}, {"{a} = {b=c}"}},
             {"=v", {{"", "v"}}, {"{} = {v}"}},
             {"a=", {{"a", ""}}, {"{a} = {}"}},
             {"a=1&", {{"a", "1"}}, {"{a} = {1}"}},
             {"flag", {}, {skip + "flag"}},
             {"&", {}, {skip}},
             {"&a=1", {{"a", "1"}}, {skip, "{a} = {1}"}},
             {"a=1&&b=2", {{"a", "1"}, {"b", "2"}}, {"{a} = {1}", skip, "{b} = {2}"}},
             {"x&y&a=1&z", {{"a", "1"}}, {skip + "x", skip + "y", "{a} = {1}", skip + "z"}},
             {"a=%zz&b=1", {{"a", ""}, {"b", "1"}}, {"{a} = {}", "{b} = {1}"}},
             {"a=x%00y", {{"a", "x"}}, {"{a} = {x}"}},
             {"a=%u20AC", {{"a", "\xE2\x82\xAC"}}, {"{a} = {\xE2\x82\xAC}"}},
             {"a=%4&1=b", {{"a", "\x04"}, {"1", "b"}}, {"{a} = {\x04}", "{1} = {b}"}}}) {
        Reset();
        UriArgs expected = row.args;
        expected["LANGUAGE"] = "en";
        EXPECT_EQ(Args(row.text), expected) << row.text;
        Texts const messages = DebugMessages();
        ASSERT_GE(messages.size(), 5U);
        EXPECT_EQ(messages[4], "uriArgs = {" + std::string(row.text) + "}");
        EXPECT_EQ(Texts(messages.begin() + 5, messages.end()), row.lines) << row.text;
    }
}

TEST_F(UriArgsTest, NamesAreNotDecoded) {
    EXPECT_EQ(Args("a%20+b=1"), (UriArgs{{"LANGUAGE", "en"}, {"a%20+b", "1"}}));
}

TEST_F(UriArgsTest, PlusIsReplacedAfterDecodingSoAnEncodedOneIsABlankToo) {
    EXPECT_EQ(Args("c=%2B")["c"], " ");
    EXPECT_EQ(Args("c=+%2b%u002B1+1")["c"], "   1 1");
}

TEST_F(UriArgsTest, AUnicodeEscapeStepsOverTheSeparatorWhichSeparatesAllTheSame) {
    EXPECT_EQ(Args("a=%u00&41=b"), (UriArgs{{"41", "b"}, {"LANGUAGE", "en"}, {"a", "\x04"}}));
}

TEST_F(UriArgsTest, ALanguageAmongDefaultsOrArgumentsWins) {
    EXPECT_EQ(Args(nullptr, {{"LANGUAGE", "fr"}})["LANGUAGE"], "fr");
    EXPECT_EQ(Args("LANGUAGE=de", {{"LANGUAGE", "fr"}})["LANGUAGE"], "de");
    EXPECT_EQ(Args("LANGUAGE=de")["LANGUAGE"], "de");
    EXPECT_EQ(Args("LANGUAGE=")["LANGUAGE"], "");
    EXPECT_EQ(Args("language=de"), (UriArgs{{"LANGUAGE", "en"}, {"language", "de"}}));
    EXPECT_STREQ(g_language, "en") << "the request's language stays as it was chosen";
}

TEST_F(UriArgsTest, AnArgumentReplacesADefaultWithoutAWord) {
    UriArgs const defaults = {{"a", "1"}, {"b", "2"}};
    EXPECT_EQ(Args("a=2", defaults), (UriArgs{{"LANGUAGE", "en"}, {"a", "2"}, {"b", "2"}}));
    EXPECT_EQ(defaults, (UriArgs{{"a", "1"}, {"b", "2"}}));
    EXPECT_EQ(DebugMessages().size(), 6U);
}

TEST_F(UriArgsTest, AnyArgumentTextIsReadByTheRules) {
    for (std::string const& text : RandomTexts("&&&===ab%%u04+\x80", 30, 1000)) {
        Reset();
        Read read = ByTheRules(text);
        read.args.emplace("LANGUAGE", "en");
        GuardedText const guarded(text);
        ASSERT_EQ(Args(guarded.c_str()), read.args) << text;
        Texts const messages = DebugMessages();
        ASSERT_EQ(Texts(messages.begin() + 5, messages.end()), read.lines) << text;
        ASSERT_EQ(DebugLines(), LinesOfLog());
    }
}

}  // namespace
