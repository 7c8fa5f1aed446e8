#include "host/language_lookup.hpp"

#include <gtest/gtest.h>

using namespace QuilloHost;

namespace {

TEST(LanguageLookup, TheFirstSuitableLanguageIsChosen) {
    struct Row {
        char const* accepted;
        char const* chosen;  // "": none
    };
    for (Row const& row : {Row{"", ""},
                           Row{" ", ""},
                           Row{",,", ""},
                           Row{"de-de", "de-de"},
                           Row{"de", "de-de"},
                           Row{"DE", "de-de"},
                           Row{"de_DE", "de-de"},
                           Row{"de-CH", "de-de"},
                           Row{"de-CH-1996", "de-de"},
                           Row{"de-CH-x-private", "de-de"},
                           Row{"d", ""},
                           Row{"dee", ""},
                           Row{"fr", ""},
                           Row{"fr, de", "de-de"},
                           Row{"fr,de,en", "de-de"},
                           Row{"en, de", "en-us"},
                           Row{"en;q=0.5, de", "de-de"},
                           Row{"en;q=0.5, de;q=0.6", "de-de"},
                           Row{"en;q=0.5,de;q=0.5", "en-us"},
                           Row{"en;q=0.001, de;q=0", "en-us"},
                           Row{"de;q=0", ""},
                           Row{"de;q=0.000", ""},
                           Row{"de;q=0, de-de", ""},
                           Row{"*", "en-us"},
                           Row{"*;q=0", ""},
                           Row{"fr, *", "en-us"},
                           Row{"*;q=0.5, ar;q=0.4", "en-us"},
                           Row{"*, en;q=0", ""},
                           Row{"ar-EG", "ar-eg"},
                           Row{"ar-SA, en;q=0.1", "ar-eg"},
                           Row{" de ; q=0.8 , en ; q=0.9 ", "en-us"},
                           Row{"de;Q=1", "de-de"},
                           Row{"de;q=1.000", "de-de"},
                           Row{"de;q=1.001", ""},
                           Row{"de;q=2", ""},
                           Row{"de;q=0.1234", ""},
                           Row{"de;q=", ""},
                           Row{"de;q", ""},
                           Row{"de;x=1", ""},
                           Row{"de;q=-1", ""},
                           Row{"de;q=0.x", ""},
                           Row{"de;q=1x", ""},
                           Row{"-de", ""},
                           Row{"de--de", ""},
                           Row{"de-", ""},
                           Row{"d\x01, en", "en-us"},
                           Row{"\xC3\xA9, en", "en-us"},
                           Row{"abcdefghi, en", "en-us"}}) {
        EXPECT_EQ(LookUpLanguage(row.accepted, {"ar-eg", "de-de", "en-us"}, "en-us").value_or(""),
                  row.chosen)
            << row.accepted;
    }
}

TEST(LanguageLookup, WithoutLanguagesThereIsNothingToChoose) {
    EXPECT_FALSE(LookUpLanguage("de, *", {}, "en-us").has_value());
}

}  // namespace
