// A GIF file (GIF89a) of one picture:
//
//     GIF89a  size  palette
//     graphic control extension    which colour is transparent
//     image descriptor             where the picture lies
//     LZW codes                    in blocks of up to 255 bytes, an empty one at the end
//     ;
//
// Numbers have their low byte first.
#include "gif.hpp"

#include <algorithm>
#include <map>
#include <utility>

namespace Pages {
namespace {

char Byte(unsigned number) {
    return static_cast<char>(static_cast<unsigned char>(number & 0xFFU));
}

std::string Word(int number) {
    unsigned const word = static_cast<unsigned>(number);
    return {Byte(word), Byte(word >> 8U)};
}

// How many bits number `count` colours: at least two, which is the least that LZW codes may have.
unsigned BitsFor(std::size_t count) {
    unsigned bits = 2;
    while ((std::size_t{1} << bits) < count) {
        ++bits;
    }
    return bits;
}

std::string Palette(std::vector<Colour> const& colours, unsigned bits) {
    std::string bytes(3, '\0');  // the transparent one
    for (Colour const& colour : colours) {
        bytes += {Byte(colour.red), Byte(colour.green), Byte(colour.blue)};
    }
    bytes.resize((std::size_t{1} << bits) * 3, '\0');
    return bytes;
}

// Codes of a changing width, the low bits first.
class BitWriter {
public:
    void Write(unsigned code, unsigned width) {
        pending_ |= code << pendingBits_;
        pendingBits_ += width;
        while (pendingBits_ >= 8) {
            WriteByte();
            pendingBits_ -= 8;
        }
    }

    std::string Finish() {
        if (pendingBits_ > 0) {
            WriteByte();
        }
        return std::move(bytes_);
    }

private:
    void WriteByte() {
        bytes_ += Byte(pending_);
        pending_ >>= 8U;
    }

    std::string bytes_;
    unsigned pending_ = 0;
    unsigned pendingBits_ = 0;
};

// LZW as GIF has it: a code stands for a run of pixels, the codes of runs are given out as they are
// met, and when all 4096 are used up the table begins anew.
class LzwEncoder {
public:
    explicit LzwEncoder(unsigned colourBits) : colourBits_(colourBits) { BeginTable(); }

    void Add(Paint pixel) {
        if (!hasRun_) {
            run_ = pixel;
            hasRun_ = true;
            return;
        }
        auto const longer = table_.find({run_, pixel});
        if (longer != table_.end()) {
            run_ = longer->second;
            return;
        }
        bits_.Write(run_, width_);
        Learn(pixel);
        run_ = pixel;
    }

    std::string Finish() {
        bits_.Write(run_, width_);
        // The reader learns a run from the last code, too, and may then read wider ones.
        if (next_ == 1U << width_ && width_ < mostBits) {
            ++width_;
        }
        bits_.Write(EndCode(), width_);
        return bits_.Finish();
    }

private:
    static constexpr unsigned mostBits = 12;

    unsigned ClearCode() const { return 1U << colourBits_; }
    unsigned EndCode() const { return ClearCode() + 1; }

    void BeginTable() {
        width_ = std::max(width_, colourBits_ + 1);
        bits_.Write(ClearCode(), width_);
        table_.clear();
        next_ = EndCode() + 1;
        width_ = colourBits_ + 1;
    }

    // Gives a code to the run and `pixel` behind it.
    void Learn(Paint pixel) {
        if (next_ == 1U << mostBits) {
            BeginTable();
            return;
        }
        if (next_ == 1U << width_) {
            ++width_;
        }
        table_[{run_, pixel}] = next_++;
    }

    unsigned const colourBits_;
    std::map<std::pair<unsigned, Paint>, unsigned> table_;
    BitWriter bits_;
    unsigned width_ = 0;
    unsigned next_ = 0;
    unsigned run_ = 0;
    bool hasRun_ = false;
};

std::string Codes(Picture const& picture, unsigned colourBits) {
    LzwEncoder encoder(colourBits);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            encoder.Add(picture.At(x, y));
        }
    }
    return encoder.Finish();
}

std::string Blocks(std::string const& bytes) {
    std::string blocks;
    for (std::size_t at = 0; at < bytes.size(); at += 255) {
        std::string const block = bytes.substr(at, 255);
        blocks += Byte(static_cast<unsigned>(block.size()));
        blocks += block;
    }
    return blocks + '\0';
}

}  // namespace

Picture::Picture(int pictureWidth, int pictureHeight)
    : width(pictureWidth),
      height(pictureHeight),
      pixels_(static_cast<std::size_t>(pictureWidth) * static_cast<std::size_t>(pictureHeight),
              transparent) {}

std::size_t Picture::Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

Paint& Picture::At(int x, int y) {
    return pixels_.at(Index(x, y));
}

Paint Picture::At(int x, int y) const {
    return pixels_.at(Index(x, y));
}

std::string Gif(Picture const& picture, std::vector<Colour> const& colours) {
    unsigned const bits = BitsFor(colours.size() + 1);
    std::string const size = Word(picture.width) + Word(picture.height);
    std::string file = "GIF89a" + size;
    file += {Byte(0x80U | (bits - 1)), '\0', '\0'};  // a palette, of that many colours
    file += Palette(colours, bits);
    file += {'!', '\xF9', 4, 1, 0, 0, static_cast<char>(transparent), '\0'};
    file += ',' + Word(0) + Word(0) + size + '\0';
    file += Byte(bits) + Blocks(Codes(picture, bits));
    return file + ';';
}

}  // namespace Pages
