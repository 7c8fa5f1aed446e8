// Pictures of a few colours, and GIF files of them.
#ifndef QUILLO_PAGES_IMAGES_GIF_HPP
#define QUILLO_PAGES_IMAGES_GIF_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Pages {

// The colour of a pixel, as its number in the palette. Number 0 is transparent.
typedef std::uint8_t Paint;
constexpr Paint transparent = 0;

struct Colour {
    std::uint8_t red, green, blue;
};

// A picture, transparent at first.
class Picture {
public:
    Picture(int pictureWidth, int pictureHeight);

    Paint& At(int x, int y);
    Paint At(int x, int y) const;

    int const width;
    int const height;

private:
    std::size_t Index(int x, int y) const;

    std::vector<Paint> pixels_;  // the rows from the top down
};

// The GIF file (GIF89a) of `picture`, whose paints 1, 2, ... are `colours`: at most 255 of them. A
// side of the picture has 1 to 65535 pixels.
std::string Gif(Picture const& picture, std::vector<Colour> const& colours);

}  // namespace Pages

#endif
