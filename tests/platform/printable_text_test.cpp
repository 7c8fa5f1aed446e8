#include "host/printable_text.hpp"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Printable(std::string const& text) {
    std::string printable;
    QuilloHost::AppendPrintable(printable, text);
    return printable;
}

TEST(PrintableText, EscapesEveryControlByteAndTheBackslash) {
    EXPECT_EQ(Printable("a\nb"), "a\\nb");
    EXPECT_EQ(Printable("a\tb\rc"), "a\\tb\\rc");
    EXPECT_EQ(Printable("\x1b[1m"), "\\x1b[1m");
    EXPECT_EQ(Printable(std::string("\0\x01\x1f\x7f", 4)), "\\x00\\x01\\x1f\\x7f");
    EXPECT_EQ(Printable("\\n"), "\\\\n");
}

TEST(PrintableText, LeavesEveryOtherByteAsItIs) {
    for (int code = 0x20; code < 0x100; ++code) {
        if (code != 0x7F && code != '\\') {
            std::string const byte(1, static_cast<char>(code));
            EXPECT_EQ(Printable(byte), byte) << code;
        }
    }
}

TEST(PrintableText, GivesEachByteAnOutputOfItsOwn) {
    std::string all;
    for (int code = 0; code < 0x100; ++code) {
        std::string const printable = Printable(std::string(1, static_cast<char>(code)));
        EXPECT_EQ(all.find('|' + printable + '|'), std::string::npos) << code;
        all += '|' + printable + '|';
    }
}

}  // namespace
