// The German catalog as the build made it, to be damaged.
#ifndef QUILLO_TESTS_PLATFORM_SHIPPED_CATALOG_HPP
#define QUILLO_TESTS_PLATFORM_SHIPPED_CATALOG_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

struct ShippedCatalog {
    ShippedCatalog() {
        std::ifstream file(QUILLO_TEST_CATALOGS "/de-de/LC_MESSAGES/quillo.mo", std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    }

    std::size_t Word(std::size_t at) const {
        std::size_t word = 0;
        for (std::size_t i = 4; i-- > 0;) {
            word = word << 8 | static_cast<unsigned char>(bytes.at(at + i));
        }
        return word;
    }

    // The catalog with another word at `at`.
    std::string With(std::size_t at, std::size_t word) const {
        std::string changed = bytes;
        for (std::size_t i = 0; i < 4; ++i) {
            changed.at(at + i) = static_cast<char>(word >> 8 * i);
        }
        return changed;
    }

    // The catalog in the other byte order: the words stand before the texts.
    std::string Swapped() const {
        std::string swapped = bytes;
        auto const end = static_cast<std::ptrdiff_t>(Word(24) + 4 * Word(20));
        for (std::ptrdiff_t at = 0; at < end; at += 4) {
            std::reverse(swapped.begin() + at, swapped.begin() + at + 4);
        }
        return swapped;
    }

    std::string bytes;
};

#endif
