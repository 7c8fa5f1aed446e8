#include <algorithm>
#include <set>
#include <tuple>

#include "support/external_data_test.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

// `text` up to its first NUL.
std::string Cut(std::string const& text) {
    return text.substr(0, text.find('\0'));
}

// The text that was filtered, out of the four entities.
std::string Unfiltered(std::string filtered) {
    for (auto const& entity : std::vector<std::pair<std::string, char>>{
             {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&amp;", '&'}}) {
        std::size_t at = 0;
        while ((at = filtered.find(entity.first, at)) != std::string::npos) {
            filtered.replace(at++, entity.first.size(), 1, entity.second);
        }
    }
    return filtered;
}

bool IsControl(char c) {
    int const byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\t' && c != '\n') || byte == 0x7F;
}

TEST_P(ExternalDataTest, FilteredTextHoldsNoMarkupAndNoControlBytes) {
    ForEachText([](std::string const& text) {
        std::string const filtered = Filter(text);
        EXPECT_EQ(filtered.find_first_of("<>\""), std::string::npos);
        EXPECT_EQ(std::count_if(filtered.begin(), filtered.end(), IsControl), 0);
        std::size_t at = 0;
        while ((at = filtered.find('&', at)) != std::string::npos) {
            std::string const entity = filtered.substr(at, filtered.find(';', at) + 1 - at);
            EXPECT_EQ((std::set<std::string>{"&lt;", "&gt;", "&amp;", "&quot;"}).count(entity), 1U);
            at += entity.size();
        }
        std::string expected = Cut(text);
        auto const controls = std::count_if(expected.begin(), expected.end(), IsControl);
        EXPECT_EQ(static_cast<std::size_t>(controls), Platform().log.size());
        std::replace_if(expected.begin(), expected.end(), IsControl, '_');
        EXPECT_EQ(Unfiltered(filtered), expected);
    });
}

TEST_P(ExternalDataTest, EncodedTextHasFewBytesAndDecodesToItself) {
    ForEachText([](std::string const& text) {
        std::string const encoded = PcntEncode(text);
        EXPECT_EQ(encoded.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                            "0123456789/._-%"),
                  std::string::npos);
        EXPECT_EQ(PcntDecode(encoded.c_str(), nullptr), Cut(text));
    });
}

TEST_P(ExternalDataTest, DecodedTextIsNoLongerThanTheTextAndHoldsNoNul) {
    ForEachText([](std::string const& text) {
        std::string const decoded = PcntDecode(text.c_str(), nullptr);
        EXPECT_EQ(decoded.find('\0'), std::string::npos);
        EXPECT_LE(decoded.size(), text.size() + 2) << "an escape without its digits grows";
        std::string const head = Cut(text).substr(0, text.find('%'));
        EXPECT_EQ(decoded.substr(0, head.size()), head);
        std::size_t const half = Cut(text).size() / 2;
        std::string const bounded = PcntDecode(text.c_str(), text.c_str() + half);
        EXPECT_EQ(decoded.substr(0, bounded.size()), bounded);
    });
}

TEST_P(ExternalDataTest, BackslashesStandBeforeEveryQuoteAndNothingElseIsAdded) {
    ForEachText([](std::string const& text) {
        for (auto const& slashed :
             {std::make_tuple(AddSlashes(text), Cut(text), std::string("\\\"'")),
              std::make_tuple(EscapeJavascriptString(text),
                              text.find_first_of("\"\\") == text.npos ? text : Cut(text),
                              std::string("\\\""))}) {
            std::string bare;
            std::string const& written = std::get<0>(slashed);
            for (std::size_t i = 0; i < written.size(); ++i) {
                bool const isSpecial = std::get<2>(slashed).find(written[i]) != std::string::npos;
                EXPECT_TRUE(!isSpecial || written[i] == '\\') << "a quote without a backslash";
                i += isSpecial ? 1U : 0U;
                bare += written.at(i);
            }
            EXPECT_EQ(bare, std::get<1>(slashed));
        }
    });
}

TEST_P(ExternalDataTest, FieldsHoldNoDelimiterAndJoinToTheText) {
    ForEachText([](std::string const& text) {
        for (std::string const& delimiters : Texts{" ", "/?&=", "<>\"'"}) {
            Texts kept;
            Split(text, delimiters, kept, KeepEmpty);
            std::size_t at = 0;
            for (std::string const& field : kept) {
                EXPECT_EQ(field.find_first_of(delimiters), std::string::npos);
                EXPECT_EQ(text.compare(at, field.size(), field), 0);
                at += field.size();
                EXPECT_TRUE(at >= Cut(text).size() ||
                            delimiters.find(text[at]) != std::string::npos);
                at += at < Cut(text).size() ? 1U : 0U;
            }
            EXPECT_EQ(at, Cut(text).size());
            Texts skipped;
            Split(text, delimiters, skipped, SkipEmpty);
            kept.erase(std::remove(kept.begin(), kept.end(), ""), kept.end());
            EXPECT_EQ(skipped, kept);
        }
    });
}

// The fields of a query that has no wrong one.
Texts Fields(std::string const& query) {
    Texts fields;
    std::string const rest = query + "&";
    for (std::size_t at = 0; at < rest.size(); at = rest.find('&', at) + 1) {
        fields.push_back(rest.substr(at, rest.find('&', at) - at));
    }
    std::sort(fields.begin(), fields.end());
    return fields;
}

TEST_P(ExternalDataTest, AUriIsItsDirectoryItsPageAndItsArgumentsJoined) {
    ForEachText([](std::string const& text) {
        for (std::string const& uri : {text, "/p?" + text}) {
            Platform().log.clear();
            std::string dir;
            std::string page;
            UriArgs args;
            bool const isBad = ParseUri(uri, dir, page, args);
            EXPECT_EQ(uri.substr(0, dir.size() + page.size()), dir + page);
            EXPECT_TRUE(dir.empty() || dir.back() == '/');
            EXPECT_EQ(page.find_first_of("/?"), std::string::npos);
            std::string const query = uri.substr(dir.size() + page.size());
            EXPECT_EQ(query.find('/'), std::string::npos);
            EXPECT_EQ(query.empty() ? '?' : query[0], '?');
            EXPECT_EQ(isBad, !Platform().log.empty());
            if (isBad) {
                EXPECT_EQ(Platform().log.back().message, "Invalid URI: " + Cut(uri));
                continue;
            }
            Texts joined;
            for (auto const& arg : args) {
                joined.push_back(arg.first + "=" + arg.second);
            }
            std::sort(joined.begin(), joined.end());
            EXPECT_EQ(joined, query.empty() ? Texts() : Fields(query.substr(1)));
        }
    });
}

TEST_P(ExternalDataTest, AnyArgumentTextIsReadAndTraced) {
    ForEachText([](std::string const& text) {
        Platform().languageAnswer = "en-us";
        ZOV_AppData request = {};
        request.uriArgs = text.c_str();
        UriArgs const args = GetUriArgs(request, UriArgs());
        EXPECT_EQ(args.count("LANGUAGE"), 1U);
        for (auto const& arg : args) {
            EXPECT_EQ(arg.first.find_first_of("=&"), std::string::npos);
            EXPECT_EQ(arg.second.find('+'), std::string::npos);
        }
        EXPECT_EQ(DebugLines().size(), Platform().log.size());
    });
}

INSTANTIATE_TEST_SUITE_P(Folders, ExternalDataTest,
                         ::testing::Values(ExternalSource{"naughty-strings", ".txt", 400},
                                           ExternalSource{"naughty-strings", ".json", 400},
                                           ExternalSource{"wpt-url", ".json", 1000},
                                           ExternalSource{"html5lib", ".test", 5000},
                                           ExternalSource{"xss", ".txt", 500},
                                           ExternalSource{"http", ".txt", 500}),
                         ExternalDataTest::Name);

TEST(JsonStrings, AreTakenOutOfTheirEscapes) {
    EXPECT_EQ(JsonStrings(R"({"a\"\\\/": ["\u00e9\t", 1, "", "\ud83d\ude00\ud83d"]})"),
              (Texts{"a\"\\/", "\xC3\xA9\t", "", "\xF0\x9F\x98\x80\xED\xA0\xBD"}));
}

}  // namespace
