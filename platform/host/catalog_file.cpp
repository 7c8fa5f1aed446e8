// A catalog is made of words of 32 bits, little-endian or big-endian, and of texts.
//
//     0   magic number 0x950412de
//     4   revision, major and minor, 16 bits each
//     8   number of phrases              12  offset of the phrases' table
//                                        16  offset of the translations' table
//     20  size of the hash table         24  offset of the hash table
//
// A table has a row a phrase: the length of its text without the NUL behind it, and its offset. A
// word of the hash table, which may be missing, is the number of a phrase from 1 up, or 0; a
// look-up takes the remainder of a division by two less than its size.
#include "host/catalog_file.hpp"

#include <cstddef>
#include <cstdint>

namespace QuilloHost {

namespace {

constexpr std::uint32_t magicNumber = 0x950412de;
constexpr std::size_t headSize = 28;

class CatalogFile {
public:
    explicit CatalogFile(std::string const& content) : bytes(content) {}

    char const* Damage() {
        if (bytes.size() < headSize) {
            return "it is too short";
        }
        isBigEndian = bytes[0] == '\x95';
        if (Word(0) != magicNumber || Word(4) >> 16 > 1) {
            return "it is no catalog of msgfmt";
        }
        if (!HasTable(12) || !HasTable(16)) {
            return "a text lies outside of it, or has no end";
        }
        return HasHashTable() ? nullptr : "its hash table is damaged";
    }

private:
    std::uint32_t Word(std::size_t at) const {
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            word = word << 8 | static_cast<unsigned char>(bytes[at + (isBigEndian ? i : 3 - i)]);
        }
        return word;
    }

    // Whether `count` words lie at `offset`. The sums have 64 bits, and cannot wrap around.
    bool HasWords(std::uint64_t offset, std::uint64_t count) const {
        return offset + 4 * count <= bytes.size();
    }

    // Whether the table whose offset stands at `place` lies within the bytes, and its texts do.
    bool HasTable(std::size_t place) const {
        std::uint32_t const count = Word(8);
        std::size_t const table = Word(place);
        if (!HasWords(table, 2 * std::uint64_t{count})) {
            return false;
        }
        for (std::size_t row = table; row < table + 8 * std::size_t{count}; row += 8) {
            std::uint64_t const end = std::uint64_t{Word(row)} + Word(row + 4);
            if (end >= bytes.size() || bytes[static_cast<std::size_t>(end)] != '\0') {
                return false;
            }
        }
        return true;
    }

    bool HasHashTable() const {
        std::uint32_t const size = Word(20);
        std::size_t const table = Word(24);
        if (size == 0) {
            return true;
        }
        if (size < 3 || !HasWords(table, size)) {
            return false;
        }
        for (std::size_t word = table; word < table + 4 * std::size_t{size}; word += 4) {
            if (Word(word) > Word(8)) {
                return false;
            }
        }
        return true;
    }

    std::string const& bytes;
    bool isBigEndian = false;
};

}  // namespace

char const* DamageOf(std::string const& bytes) {
    return CatalogFile(bytes).Damage();
}

}  // namespace QuilloHost
