// An input of a fuzz target, taken apart.
//
// Texts are taken from the front and numbers from the back: a seed is a text as it stands, and its
// last bytes say what is done with it. Where the input is used up, texts are empty and numbers 0.
#ifndef QUILLO_FUZZ_FEED_HPP
#define QUILLO_FUZZ_FEED_HPP

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class Feed {
public:
    explicit Feed(std::string_view input) : bytes(input) {}

    bool IsEmpty() const { return bytes.empty(); }

    unsigned Byte() {
        if (bytes.empty()) {
            return 0;
        }
        unsigned const byte = static_cast<unsigned char>(bytes.back());
        bytes.remove_suffix(1);
        return byte;
    }

    // A number below `limit`, which is 1 to 256.
    unsigned Below(unsigned limit) { return Byte() % limit; }

    bool Bit() { return (Byte() & 1) != 0; }

    // Any whole number, the small ones more often than the others.
    int Number() {
        std::uint32_t number = 0;
        for (unsigned left = Below(5); left > 0; --left) {
            number = number << 8 | Byte();
        }
        return static_cast<int>(Bit() ? 0 - number : number);
    }

    // Up to a backslash and the byte behind it, which are passed over; two backslashes are one that
    // belongs to the text.
    std::string Text() {
        std::string text;
        while (!bytes.empty() && (bytes.front() != '\\' || bytes.substr(0, 2) == "\\\\")) {
            text += bytes.front();
            bytes.remove_prefix(bytes.front() == '\\' ? 2 : 1);
        }
        bytes.remove_prefix(bytes.size() < 2 ? bytes.size() : 2);
        return text;
    }

    // All that is left.
    std::string Rest() {
        std::string const rest(bytes);
        bytes = std::string_view();
        return rest;
    }

private:
    std::string_view bytes;
};

#endif
