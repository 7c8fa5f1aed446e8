// Where plain text ends: at every length and place, and for every byte.
#include "elements/plain_text.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

bool IsPlain(char c) {
    unsigned char const byte = static_cast<unsigned char>(c);
    return byte >= 0x20 ? std::string("<>&\"\x7F").find(c) == std::string::npos
                        : c == '\t' || c == '\n';
}

char const* EndOfPlain(char const* text, char const* end) {
    return Marks<NotPlain>(text, end).From(text);
}

std::size_t PlainLength(std::string const& text) {
    return static_cast<std::size_t>(EndOfPlain(text.data(), text.data() + text.size()) -
                                    text.data());
}

TEST(PlainTextTest, EndsAtTheFirstByteThatIsNotPlainWhereverThatIs) {
    for (std::size_t length = 0; length <= 70; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            for (int byte = 0; byte < 0x100; ++byte) {
                std::string text(length, 'a');
                text[place] = static_cast<char>(byte);
                ASSERT_EQ(PlainLength(text), IsPlain(text[place]) ? length : place)
                    << "byte " << byte << " at " << place << " of " << length;
            }
        }
    }
}

TEST(PlainTextTest, EndsAtTheFirstOfSeveralBytes) {
    for (std::size_t length = 2; length <= 50; ++length) {
        for (std::size_t first = 0; first < length; ++first) {
            for (std::size_t second = first + 1; second < length; ++second) {
                std::string text(length, '\t');
                text[first] = '&';
                text[second] = '\0';
                ASSERT_EQ(PlainLength(text), first);
            }
        }
    }
}

TEST(PlainTextTest, AllThatIsNotPlainIsFoundOneAfterTheOther) {
    for (std::size_t length = 0; length <= 70; ++length) {
        for (std::size_t step = 1; step <= 20; ++step) {
            std::string text(length, ' ');
            for (std::size_t place = 0; place < length; place += step) {
                text[place] = '&';
            }
            char const* const end = text.data() + length;
            Marks<NotPlain> marks(text.data(), end);
            std::size_t expected = 0;
            for (char const* p = marks.From(text.data()); p != end; p = marks.From(p + 1)) {
                ASSERT_EQ(static_cast<std::size_t>(p - text.data()), expected);
                expected += step;
            }
            ASSERT_GE(expected, length) << "every " << step;
        }
    }
}

TEST(PlainTextTest, WhatIsSkippedIsNotFound) {
    for (std::size_t length = 1; length <= 70; ++length) {
        std::string const text(length, '<');
        char const* const end = text.data() + length;
        for (std::size_t step = 1; step <= length; ++step) {
            Marks<NotPlain> marks(text.data(), end);
            for (std::size_t place = 0; place < length; place += step) {
                ASSERT_EQ(marks.From(text.data() + place), text.data() + place);
            }
            ASSERT_EQ(marks.From(end), end);
        }
    }
}

// Each text is a block of its own: the sanitizers see a byte read beside it.
TEST(PlainTextTest, NoByteBesideTheTextCounts) {
    for (std::size_t length = 0; length <= 50; ++length) {
        std::vector<char> const block(length, '\xFF');
        EXPECT_EQ(EndOfPlain(block.data(), block.data() + length), block.data() + length);
        std::string const around = '<' + std::string(length, ' ') + '<';
        EXPECT_EQ(EndOfPlain(&around[1], &around[1] + length), &around[1] + length);
    }
}

// A page of text between two pages that nobody can read.
TEST(PlainTextTest, NoByteBesideTheTextIsRead) {
    std::size_t const size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const pages = mmap(nullptr, 3 * size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    char* const begin = static_cast<char*>(pages) + size;
    char* const end = begin + size;
    ASSERT_EQ(mprotect(begin, size, PROT_READ | PROT_WRITE), 0);
    std::memset(begin, 'a', size);
    for (std::size_t length = 0; length <= 70; ++length) {
        EXPECT_EQ(EndOfPlain(begin, begin + length), begin + length);
        EXPECT_EQ(EndOfPlain(end - length, end), end);
    }
    EXPECT_EQ(munmap(pages, 3 * size), 0);
}

}  // namespace
