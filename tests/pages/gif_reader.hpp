// Reads GIF files of one picture back, and shares nothing with what writes them.
#ifndef QUILLO_TESTS_GIF_READER_HPP
#define QUILLO_TESTS_GIF_READER_HPP

#include <string>

struct ReadPicture {
    unsigned width, height, colourCount;
    bool isFirstTransparent;
    std::string palette;  // three bytes a colour
    std::string pixels;   // a colour's number each, the rows from the top down
};

// Fails the test, or throws std::out_of_range, when `file` is no such file.
ReadPicture ReadGif(std::string const& file);

#endif
