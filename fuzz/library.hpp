// What the targets that try the library share: the recording platform, and what the library says.
#ifndef QUILLO_FUZZ_LIBRARY_HPP
#define QUILLO_FUZZ_LIBRARY_HPP

#include <memory>
#include <quillo>
#include <string>
#include <vector>

#include "support/recording_platform.hpp"

// The process as it was at its start: nothing reported, nothing recorded. What a check leaves
// behind libFuzzer takes for a leak, and tries it again.
void ResetLibrary();

// "LEVEL: MESSAGE" of every entry of the device log. What is in `debugMsgs` is compared with the
// log on the way: a text and a line break for each entry that has a line there.
std::vector<std::string> Reports();

// The text of an element and all below it.
std::string Html(Quillo::Element const& root, int level = 0);

// A copy of `text` up to its first NUL, in memory that ends with the NUL: what reads on is found.
class TightText {
public:
    explicit TightText(std::string const& text);

    char const* c_str() const { return bytes.get(); }

private:
    std::unique_ptr<char[]> bytes;
};

#endif
