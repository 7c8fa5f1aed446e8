// What holds for the style sheet as a whole.
#include <gtest/gtest.h>

#include <page.hpp>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace {

typedef std::map<std::string, std::string> Colours;

std::string StyleSheet() {
    for (QuilloServer::StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->path == "/style.css") {
            return std::string(file->bytes);
        }
    }
    return "";
}

// Takes the declarations "--NAME: #RRGGBB;" of the first block of `selector` over `colours`.
Colours Root(std::string const& sheet, std::string const& selector, Colours colours) {
    std::size_t const begin = sheet.find(selector + " {");
    std::string const block = sheet.substr(begin, sheet.find('}', begin) - begin);
    for (std::size_t name = block.find("--"); name != std::string::npos;
         name = block.find("--", name + 2)) {
        std::size_t const colon = block.find(": ", name);
        std::string value = block.substr(colon + 2, block.find(';', colon) - colon - 2);
        colours[block.substr(name, colon - name)] = value == "#fff" ? "#ffffff" : value;
    }
    return colours;
}

Colours Light() {
    return Root(StyleSheet(), ":root", {});
}

Colours Dark() {
    return Root(StyleSheet(), ":root:not([data-theme=light])", Light());
}

// The relative luminance (WCAG 2.2) of "#RRGGBB".
double Luminance(std::string const& colour) {
    static double const weights[] = {0.2126, 0.7152, 0.0722};
    double sum = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        double const part = std::stoi(colour.substr(1 + 2 * i, 2), nullptr, 16) / 255.0;
        sum +=
            weights[i] * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return sum;
}

double Contrast(std::string const& left, std::string const& right) {
    double const a = Luminance(left) + 0.05;
    double const b = Luminance(right) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(StyleSheetTest, TextCanBeReadOnWhateverItStandsInBothThemes) {
    double const least = 4.5;  // WCAG 2.2, level AA
    for (Colours const& theme : {Light(), Dark()}) {
        for (char const* const text : {"--ink", "--quiet", "--link", "--good", "--warn", "--bad"}) {
            for (char const* const ground : {"--paper", "--card", "--stripe"}) {
                EXPECT_GE(Contrast(theme.at(text), theme.at(ground)), least)
                    << text << " on " << ground;
            }
        }
        EXPECT_GE(Contrast(theme.at("--on-ink"), theme.at("--on")), least);
        EXPECT_GE(Contrast(theme.at("--on-ink"), theme.at("--off")), least);
        EXPECT_GE(Contrast(theme.at("--off-quiet"), theme.at("--off")), least);
    }
}

TEST(StyleSheetTest, TheThemesAreDifferentButForTheColoursOfTheImages) {
    Colours const light = Light();
    Colours const dark = Dark();
    EXPECT_NE(light.at("--paper"), dark.at("--paper"));
    EXPECT_NE(light.at("--ink"), dark.at("--ink"));
    EXPECT_EQ(light.at("--on"), dark.at("--on"));
    EXPECT_EQ(light.at("--off"), dark.at("--off"));
}

TEST(StyleSheetTest, DarkIsTheSameBySystemAndByChoice) {
    EXPECT_EQ(Root(StyleSheet(), ":root[data-theme=dark]", Light()), Dark());
}

TEST(StyleSheetTest, NoDeclarationNamesALeftOrARightSide) {
    std::string const sheet = StyleSheet();
    for (char const* const side :
         {"-left:", "-right:", " left:", " right:", "-left-", "-right-", ": left", ": right"}) {
        EXPECT_EQ(sheet.find(side), std::string::npos) << side;
    }
}

TEST(StyleSheetTest, NothingIsLoadedFromElsewhere) {
    std::string const sheet = StyleSheet();
    EXPECT_EQ(sheet.find("@import"), std::string::npos);
    EXPECT_EQ(sheet.find("//"), std::string::npos);
    for (std::size_t at = sheet.find("url("); at != std::string::npos;
         at = sheet.find("url(", at + 1)) {
        std::size_t const begin = at + std::string("url(\"").size();
        std::string const path = sheet.substr(begin, sheet.find('"', begin) - begin);
        auto const& files = QuilloServer::StaticFiles();
        EXPECT_TRUE(std::any_of(files.begin(), files.end(), [&](auto const* file) {
            return file->path == path;
        })) << path;
    }
}

}  // namespace
