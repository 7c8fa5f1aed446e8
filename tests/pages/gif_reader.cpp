#include "gif_reader.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace {

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

}  // namespace

ReadPicture ReadGif(std::string const& file) {
    EXPECT_EQ(file.substr(0, 6), "GIF89a");
    ReadPicture read = {};
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
