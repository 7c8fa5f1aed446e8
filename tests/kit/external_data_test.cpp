// The safe helpers over texts that were made to break their like.
#include <quillo_kit/safe.hpp>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "kit/attribute_value.hpp"
#include "support/external_data_test.hpp"

using namespace QuilloKit;

namespace {

typedef std::vector<std::string> Texts;

using KitExternalDataTest = ExternalDataTest;

bool IsControl(char c) {
    unsigned char const byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

// What a browser takes `url` for before it reads its scheme (URL Standard, 4.4).
std::string Read(std::string url) {
    auto const isKept = [](char c) { return static_cast<unsigned char>(c) > 0x20; };
    url.erase(url.begin(), std::find_if(url.begin(), url.end(), isKept));
    url.erase(std::find_if(url.rbegin(), url.rend(), isKept).base(), url.end());
    for (char const dropped : {'\t', '\n', '\r'}) {
        url.erase(std::remove(url.begin(), url.end(), dropped), url.end());
    }
    return url;
}

// The scheme of `url` as a browser reads it, in lower case; empty: none, the URL is relative.
std::string Scheme(std::string const& url) {
    std::string scheme;
    for (char const c : Read(url)) {
        if (c == ':') {
            return scheme;
        }
        bool const isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        bool const isLater = (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
        if (!isLetter && (scheme.empty() || !isLater)) {
            return "";
        }
        scheme += isLetter ? static_cast<char>(c | 0x20) : c;
    }
    return "";
}

bool IsAllowedScheme(std::string const& scheme) {
    return scheme == "http" || scheme == "https" || scheme == "mailto";
}

TEST_P(KitExternalDataTest, AnAttributesValueIsTheTextButForControlBytes) {
    ForEachText([](std::string const& text) {
        std::string seen = text.substr(0, text.find('\0'));
        std::replace_if(
            seen.begin(), seen.end(), [](char c) { return IsControl(c) && c != '\t' && c != '\n'; },
            '_');
        EXPECT_EQ(TextOf(SafeAttr(text)), seen);
    });
}

TEST_P(KitExternalDataTest, NoUrlIsOfASchemeThatIsNotAllowed) {
    ForEachText([](std::string const& text) {
        for (std::string const& url : {text, "javascript:" + text, " http:" + text}) {
            std::string const written = TextOf(SafeUrl(url));
            std::string const scheme = Scheme(written);
            EXPECT_TRUE(scheme.empty() || IsAllowedScheme(scheme)) << written;
            std::string const read = Read(url);
            EXPECT_TRUE(written == "#" || written == read) << written;
            if (IsAllowedScheme(Scheme(url))) {
                bool const hasControl = std::any_of(read.begin(), read.end(), IsControl);
                EXPECT_EQ(written, hasControl ? "#" : read);
            } else if (!Scheme(url).empty()) {
                EXPECT_EQ(written, "#");
            }
        }
    });
}

TEST_P(KitExternalDataTest, AScriptsStringIsTheText) {
    ForEachText([](std::string const& text) {
        std::string const js = JsString(text);
        EXPECT_EQ(JsonStrings(js), Texts{text});
        EXPECT_EQ(js.find('<'), std::string::npos);
        EXPECT_EQ(std::count_if(js.begin(), js.end(),
                                [](char c) { return static_cast<unsigned char>(c) < 0x20; }),
                  0);
        EXPECT_EQ(js.find("\xE2\x80\xA8"), std::string::npos);
        EXPECT_EQ(js.find("\xE2\x80\xA9"), std::string::npos);
    });
}

TEST_P(KitExternalDataTest, AStyleIsOneDeclarationOfPlainWords) {
    ForEachText([](std::string const& text) {
        EXPECT_EQ(SafeStyle(text + ":", "red"), "");
        std::string const style = SafeStyle("color", text);
        EXPECT_TRUE(style.empty() || style.compare(0, 7, "color: ") == 0);
        EXPECT_EQ(style.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                          "0123456789 #%.-:"),
                  std::string::npos);
        EXPECT_EQ(style.find(':'), style.rfind(':'));
    });
}

TEST_P(KitExternalDataTest, ANameIsTheTextOrRefused) {
    ForEachText([](std::string const& text) {
        bool const isName = !text.empty() && (text[0] < '0' || text[0] > '9') &&
                            text.find_first_not_of(
                                "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrst"
                                "uvwxyz0123456789_") == std::string::npos;
        if (isName) {
            EXPECT_EQ(SafeName(text), text);
        } else {
            EXPECT_THROW(SafeName(text), std::invalid_argument);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Folders, KitExternalDataTest,
                         ::testing::Values(ExternalSource{"naughty-strings", ".txt", 400},
                                           ExternalSource{"naughty-strings", ".json", 400},
                                           ExternalSource{"wpt-url", ".json", 1000},
                                           ExternalSource{"html5lib", ".test", 5000},
                                           ExternalSource{"xss", ".txt", 500}),
                         ExternalDataTest::Name);

std::string Contents(std::string const& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

// The cases of `json` without a base and without a failure: each URL, and the scheme that a browser
// finds in it, with its ':'. A value that is no string, such as a base that is null, is none of the
// strings, so the name of the next field stands behind its name.
std::vector<std::pair<std::string, std::string>> AbsoluteUrls(std::string const& json) {
    Texts const strings = JsonStrings(json);
    std::vector<std::pair<std::string, std::string>> urls;
    for (std::size_t i = 0; i + 3 < strings.size(); ++i) {
        if (strings[i] == "input" && strings[i + 2] == "base" && strings[i + 3] == "href") {
            auto const protocol = std::find(strings.begin() + static_cast<std::ptrdiff_t>(i),
                                            strings.end() - 1, "protocol");
            urls.emplace_back(strings[i + 1], *(protocol + 1));
        }
    }
    return urls;
}

TEST(UrlCases, AnAbsoluteUrlIsAllowedExactlyIfTheBrowserFindsAnAllowedScheme) {
    std::string const path = std::string(QUILLO_TEST_DATA) + "/wpt-url/urltestdata.json";
    auto const urls = AbsoluteUrls(Contents(path));
    if (urls.empty()) {
        GTEST_SKIP() << "no test data in " << path
                     << "; the CMake variable QUILLO_TEST_DATA names their folder";
    }
    EXPECT_GE(urls.size(), 200U);
    for (auto const& url : urls) {
        std::string const read = Read(url.first);
        bool const isAllowed =
            (std::set<std::string>{"http:", "https:", "mailto:"}).count(url.second) == 1 &&
            std::none_of(read.begin(), read.end(), IsControl);
        EXPECT_EQ(TextOf(SafeUrl(url.first)), isAllowed ? read : "#") << url.first;
    }
}

}  // namespace
