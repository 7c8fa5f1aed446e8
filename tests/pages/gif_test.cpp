#include "images/gif.hpp"

#include <gtest/gtest.h>

#include <random>

#include "gif_reader.hpp"

namespace {

using Pages::Gif;
using Pages::Paint;
using Pages::Picture;

std::string PixelsOf(Picture const& picture) {
    std::string pixels;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            pixels += static_cast<char>(picture.At(x, y));
        }
    }
    return pixels;
}

std::vector<Pages::Colour> Colours(std::size_t count) {
    return std::vector<Pages::Colour>(count, Pages::Colour{1, 2, 3});
}

// Pixels of `paints` paints by chance, always the same.
Picture Noise(int width, int height, unsigned paints) {
    Picture picture(width, height);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.At(x, y) = static_cast<Paint>(random() % paints);
        }
    }
    return picture;
}

TEST(GifTest, APictureComesBackAsItWas) {
    for (Picture const& picture : {Picture(1, 1), Picture(300, 2), Noise(1, 7, 3), Noise(10, 20, 3),
                                   Noise(13, 24, 4), Noise(40, 3, 2)}) {
        ReadPicture const read = ReadGif(Gif(picture, Colours(3)));
        EXPECT_EQ(read.width, picture.width);
        EXPECT_EQ(read.height, picture.height);
        EXPECT_EQ(read.pixels, PixelsOf(picture));
    }
}

TEST(GifTest, CodesBecomeWiderInTheRightPlaceWhereverThePictureEnds) {
    for (int width = 1; width <= 700; ++width) {
        Picture const picture = Noise(width, 1, 4);
        ASSERT_EQ(ReadGif(Gif(picture, Colours(3))).pixels, PixelsOf(picture)) << width;
    }
}

TEST(GifTest, ATableOfCodesThatIsFullBeginsAnew) {
    for (unsigned const paints : {4U, 16U, 256U}) {
        Picture const picture = Noise(200, 150, paints);
        EXPECT_EQ(ReadGif(Gif(picture, Colours(paints - 1))).pixels, PixelsOf(picture)) << paints;
    }
}

TEST(GifTest, ThePaletteHasTheTransparentPaintAndThenTheColours) {
    ReadPicture const read = ReadGif(Gif(Picture(1, 1), {{1, 2, 3}, {253, 254, 255}}));
    EXPECT_TRUE(read.isFirstTransparent);
    EXPECT_EQ(read.palette, std::string("\0\0\0\1\2\3\xFD\xFE\xFF\0\0\0", 12));
}

TEST(GifTest, APaletteHasRoomForAllColoursAndForFourAtLeast) {
    struct Row {
        std::size_t colours;
        unsigned room;
    };
    for (Row const& row : {Row{1, 4}, Row{3, 4}, Row{4, 8}, Row{7, 8}, Row{255, 256}}) {
        EXPECT_EQ(ReadGif(Gif(Picture(1, 1), Colours(row.colours))).colourCount, row.room);
    }
}

}  // namespace
