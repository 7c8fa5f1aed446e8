#include "host/catalog_file.hpp"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/shipped_catalog.hpp"

using QuilloHost::DamageOf;

namespace {

TEST(CatalogFile, AWholeCatalogIsOneInBothByteOrders) {
    ShippedCatalog const catalog;
    EXPECT_STREQ(DamageOf(catalog.bytes), nullptr);
    EXPECT_STREQ(DamageOf(catalog.Swapped()), nullptr);
    EXPECT_STREQ(DamageOf(catalog.With(4, 0x00010001)), nullptr) << "revision";
    EXPECT_STREQ(DamageOf(catalog.With(20, 0)), nullptr) << "the hash table may be missing";
}

TEST(CatalogFile, OneThatIsCutShortIsDamaged) {
    ShippedCatalog const catalog;
    for (std::string const& bytes : {catalog.bytes, catalog.Swapped()}) {
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            EXPECT_NE(DamageOf(bytes.substr(0, size)), nullptr) << size;
        }
    }
}

TEST(CatalogFile, EachNumberIsChecked) {
    ShippedCatalog const catalog;
    std::size_t const size = catalog.bytes.size();
    std::size_t const count = catalog.Word(8);
    std::size_t const phrases = catalog.Word(12);
    std::size_t const translations = catalog.Word(16);
    std::size_t const last = 8 * (count - 1);
    std::size_t const hashTable = catalog.Word(24);
    struct Row {
        std::size_t at;
        std::size_t word;
        char const* damage;
    };
    for (Row const& row :
         {Row{0, 0x950412df, "it is no catalog of msgfmt"},
          Row{4, 0x00020000, "it is no catalog of msgfmt"},
          Row{8, 0x20000000, "a text lies outside of it, or has no end"},
          Row{8, 0xFFFFFFFF, "a text lies outside of it, or has no end"},
          Row{12, size, "a text lies outside of it, or has no end"},
          Row{12, 0xFFFFFFF8, "a text lies outside of it, or has no end"},
          Row{16, size, "a text lies outside of it, or has no end"},
          Row{16, 0xFFFFFFF8, "a text lies outside of it, or has no end"},
          Row{phrases + last, 0xFFFFFFFF, "a text lies outside of it, or has no end"},
          Row{phrases + last + 4, size, "a text lies outside of it, or has no end"},
          Row{translations + last, catalog.Word(translations + last) - 1,
              "a text lies outside of it, or has no end"},
          Row{translations + last, catalog.Word(translations + last) + 1,
              "a text lies outside of it, or has no end"},
          Row{translations + last + 4, 0xFFFFFFFF, "a text lies outside of it, or has no end"},
          Row{20, 1, "its hash table is damaged"},
          Row{20, 2, "its hash table is damaged"},
          Row{20, 0xFFFFFFFF, "its hash table is damaged"},
          Row{24, size, "its hash table is damaged"},
          Row{24, size - 4, "its hash table is damaged"},
          Row{hashTable, count + 1, "its hash table is damaged"},
          Row{hashTable + 4 * (catalog.Word(20) - 1), 0xFFFFFFFF, "its hash table is damaged"}}) {
        EXPECT_STREQ(DamageOf(catalog.With(row.at, row.word)), row.damage)
            << row.at << " " << row.word;
    }
}

// Its hash table is the last thing in it, and whole to the byte.
TEST(CatalogFile, OneWithoutPhrasesMayHaveAHashTable) {
    std::string bytes("\xDE\x12\x04\x95", 4);
    for (char const word : {'\0', '\0', '\x1C', '\x1C', '\3', '\x1C', '\0', '\0', '\0'}) {
        bytes += std::string(1, word) + std::string(3, '\0');
    }
    EXPECT_STREQ(DamageOf(bytes), nullptr);
    bytes.pop_back();
    EXPECT_STREQ(DamageOf(bytes), "its hash table is damaged");
}

}  // namespace
