// The images are where the widgets look for them, and fit the style sheet.
#include "images/widget_images.hpp"

#include <gtest/gtest.h>

#include <page.hpp>
#include <set>

#include "gif_reader.hpp"
#include "support/page_test.hpp"

using namespace Quillo;

namespace {

class WidgetImagesTest : public PageTest {};

void CollectSources(ElementImpl const& element, std::set<std::string>& sources) {
    auto const source = element.attrs.find("src");
    if (source != element.attrs.end()) {
        sources.insert(source->second);
    }
    for (auto const& child : element.children) {
        CollectSources(*child, sources);
    }
}

// What navigation bars and tab sets name, in every state and in both kinds of language.
std::set<std::string> NamedByWidgets() {
    std::set<std::string> sources;
    for (bool const isSelected : {false, true}) {
        CollectSources(*MakeNavBar({{"a", "/", isSelected, false}}).impl, sources);
    }
    for (char const* const language : {"en", "ar"}) {
        g_language = language;
        for (std::size_t current = 0; current < 3; ++current) {
            std::vector<Slot> tabs(3, Slot{"a", "/", false, false});
            tabs[current].selected = true;
            CollectSources(*MakeTabs(tabs, Div()).impl, sources);
        }
    }
    return sources;
}

QuilloServer::StaticFile const* Find(std::string const& path) {
    for (QuilloServer::StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->path == path) {
            return file;
        }
    }
    return nullptr;
}

std::string StyleSheet() {
    QuilloServer::StaticFile const* const sheet = Find("/style.css");
    return sheet != nullptr ? std::string(sheet->bytes) : "";
}

TEST_F(WidgetImagesTest, EveryImageThatAWidgetNamesIsServedAndNoOther) {
    std::set<std::string> served;
    for (QuilloServer::StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->type == "image/gif") {
            EXPECT_EQ(file->bytes.substr(0, 6), "GIF89a") << file->path;
            served.insert(file->path);
        }
    }
    EXPECT_EQ(served, NamedByWidgets());
}

TEST_F(WidgetImagesTest, ImagesAreAsLargeAsTheWidgetsAndTheStyleSheetHaveThem) {
    struct Row {
        char const* path;
        int width, height;
    };
    for (Row const& row :
         {Row{"/images/widgets/nav_bar/left_on.gif", 10, 20},
          Row{"/images/widgets/nav_bar/left_off.gif", 10, 20},
          Row{"/images/widgets/nav_bar/right_on.gif", 8, 20},
          Row{"/images/widgets/nav_bar/right_off.gif", 8, 20},
          Row{"/images/tab_set/Tab_TopBG_R.gif", 4, 24}, Row{"/images/tab_set/Tab_LTon.gif", 6, 24},
          Row{"/images/tab_set/Tab_RToff.gif", 6, 24},
          Row{"/images/tab_set/Tab_LToffRTon.gif", 13, 24},
          Row{"/images/tab_set/Tab_LTonRTon.gif", 13, 24}}) {
        ASSERT_NE(Find(row.path), nullptr) << row.path;
        EXPECT_EQ(Find(row.path)->bytes.at(6), row.width) << row.path;
        EXPECT_EQ(Find(row.path)->bytes.at(8), row.height) << row.path;
    }
}

// The palette's paints 1 and 2, as the style sheet writes colours.
TEST_F(WidgetImagesTest, TheColoursAreThoseOfTheStyleSheet) {
    std::string const bytes(Find("/images/tab_set/Tab_LToffRTon.gif")->bytes);
    auto const colour = [&](std::size_t paint) {
        std::string text = "#";
        for (std::size_t i = 0; i < 3; ++i) {
            unsigned const part = static_cast<unsigned char>(bytes.at(13 + 3 * paint + i));
            text += "0123456789abcdef"[part >> 4U];
            text += "0123456789abcdef"[part & 15U];
        }
        return text;
    };
    EXPECT_NE(StyleSheet().find("--off: " + colour(1) + ";"), std::string::npos);
    EXPECT_NE(StyleSheet().find("--on: " + colour(2) + ";"), std::string::npos);
}

TEST_F(WidgetImagesTest, NoTwoImagesAreAlike) {
    std::set<std::string> pictures;
    std::size_t count = 0;
    for (Pages::WidgetImage const& image : Pages::WidgetImages()) {
        pictures.insert(image.gif);
        ++count;
    }
    EXPECT_EQ(pictures.size(), count);
}

// A column of an image from the top down: a paint each, '.' for a transparent one.
std::string Column(std::string const& name, bool isLast) {
    ReadPicture const read = ReadGif(std::string(
        Find((name[0] == 'T' ? "/images/tab_set/" : "/images/widgets/nav_bar/") + name + ".gif")
            ->bytes));
    std::string column;
    for (unsigned y = 0; y < read.height; ++y) {
        char const paint = read.pixels.at(y * read.width + (isLast ? read.width - 1 : 0));
        column += std::string(".fn").at(static_cast<std::size_t>(paint));
    }
    return column;
}

// What the style sheet paints beside the images: a tab that is off is three pixels lower.
TEST_F(WidgetImagesTest, AnImageContinuesTheItemAtEachOfItsSides) {
    std::string const offItem(20, 'f');
    std::string const onItem(20, 'n');
    std::string const offTab = "..." + std::string(21, 'f');
    std::string const onTab(24, 'n');
    EXPECT_EQ(Column("left_off", true), offItem);
    EXPECT_EQ(Column("left_on", true), onItem);
    EXPECT_EQ(Column("right_off", false), offItem);
    EXPECT_EQ(Column("right_on", false), onItem);
    EXPECT_EQ(Column("Tab_LToff", true), offTab);
    EXPECT_EQ(Column("Tab_LTon", true), onTab);
    EXPECT_EQ(Column("Tab_RToff", false), offTab);
    EXPECT_EQ(Column("Tab_RTon", false), onTab);
    for (bool const isLeftOn : {false, true}) {
        for (bool const isRightOn : {false, true}) {
            std::string const joint = std::string("Tab_LT") + (isLeftOn ? "on" : "off") + "RT" +
                                      (isRightOn ? "on" : "off");
            EXPECT_EQ(Column(joint, false), isLeftOn ? onTab : offTab) << joint;
            EXPECT_EQ(Column(joint, true), isRightOn ? onTab : offTab) << joint;
        }
    }
}

TEST_F(WidgetImagesTest, TheOuterCornersAreTransparent) {
    EXPECT_EQ(Column("left_on", false), ".......nnnnnn.......");
    EXPECT_EQ(Column("right_off", true), ".....ffffffffff.....");
    EXPECT_EQ(Column("Tab_LTon", false), "..." + std::string(21, 'n'));
    EXPECT_EQ(Column("Tab_RToff", true), "......" + std::string(18, 'f'));
    EXPECT_EQ(Column("Tab_TopBG_R", false), std::string(24, '.'));
}

}  // namespace
