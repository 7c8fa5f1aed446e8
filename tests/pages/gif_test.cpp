// GIF files of pictures, read back by a decoder that shares nothing with the encoder.
#include "images/gif.hpp"

#include <gtest/gtest.h>

#include <random>

namespace {

using Pages::Gif;
using Pages::Paint;
using Pages::Picture;

unsigned ByteAt(std::string const& file, std::size_t at) {
    return static_cast<unsigned char>(file.at(at));
}

unsigned WordAt(std::string const& file, std::size_t at) {
    return ByteAt(file, at) | ByteAt(file, at + 1) << 8U;
}

// The bits of the data blocks that begin at `at`, which then is behind them.
std::vector<bool> ReadBlocks(std::string const& file, std::size_t& at) {
    std::vector<bool> bits;
    for (unsigned left = ByteAt(file, at++); left != 0; left = ByteAt(file, at++)) {
        for (; left != 0; --left, ++at) {
            for (unsigned bit = 0; bit < 8; ++bit) {
                bits.push_back((ByteAt(file, at) >> bit & 1U) != 0);
            }
        }
    }
    return bits;
}

std::size_t Take(std::vector<bool> const& bits, std::size_t& at, std::size_t width) {
    std::size_t code = 0;
    for (std::size_t i = 0; i < width; ++i, ++at) {
        code |= static_cast<std::size_t>(bits.at(at)) << i;
    }
    return code;
}

// What LZW codes stand for (GIF89a, appendix F). Throws when they are no such codes.
std::string Decode(std::vector<bool> const& bits, unsigned colourBits) {
    std::size_t const clearCode = std::size_t{1} << colourBits;
    std::size_t at = 0;
    std::string text;
    std::string before;
    std::vector<std::string> runs;
    std::size_t width = colourBits + 1;
    for (;;) {
        std::size_t const code = Take(bits, at, width);
        if (code == clearCode + 1) {
            return text;
        }
        if (code == clearCode) {
            runs.assign(clearCode + 2, "");
            for (std::size_t i = 0; i < clearCode; ++i) {
                runs[i] = std::string(1, static_cast<char>(i));
            }
            width = colourBits + 1;
            before.clear();
            continue;
        }
        std::string const run = code == runs.size() ? before + before.at(0) : runs.at(code);
        text += run;
        if (!before.empty() && runs.size() < 4096) {
            runs.push_back(before + run[0]);
        }
        before = run;
        if (runs.size() == std::size_t{1} << width && width < 12) {
            ++width;
        }
    }
}

struct Read {
    unsigned width, height, colourCount;
    bool isFirstTransparent;
    std::string palette;
    std::string pixels;
};

Read ReadGif(std::string const& file) {
    EXPECT_EQ(file.substr(0, 6), "GIF89a");
    Read read = {};
    unsigned const bits = (ByteAt(file, 10) & 7U) + 1;
    read.colourCount = 1U << bits;
    read.palette = file.substr(13, std::size_t{3} * read.colourCount);
    std::size_t at = 13 + std::size_t{3} * read.colourCount;
    EXPECT_EQ(file.substr(at, 3), "!\xF9\x04");
    read.isFirstTransparent = (ByteAt(file, at + 3) & 1U) != 0 && ByteAt(file, at + 6) == 0;
    at += 8;
    EXPECT_EQ(file.at(at), ',');
    read.width = WordAt(file, at + 5);
    read.height = WordAt(file, at + 7);
    EXPECT_EQ(WordAt(file, 6), read.width);
    EXPECT_EQ(WordAt(file, 8), read.height);
    unsigned const colourBits = ByteAt(file, at + 10);
    at += 11;
    read.pixels = Decode(ReadBlocks(file, at), colourBits);
    EXPECT_EQ(file.substr(at), ";");
    return read;
}

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
        Read const read = ReadGif(Gif(picture, Colours(3)));
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
    Read const read = ReadGif(Gif(Picture(1, 1), {{1, 2, 3}, {253, 254, 255}}));
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
