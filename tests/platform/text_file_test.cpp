#include "host/sys/text_file.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/fixture_machine.hpp"

namespace {

using QuilloHost::Lines;
using QuilloHost::ReadFirstLine;
using QuilloHost::ReadText;
using QuilloHost::Words;

typedef std::vector<std::string> Texts;

TEST(TextFile, IsReadWhole) {
    FixtureMachine const machine;
    for (std::size_t const size : {0U, 1U, 4095U, 4096U, 4097U, 100000U}) {
        machine.Write("file", std::string(size, 'x'));
        EXPECT_EQ(ReadText(machine.Folder() + "/file"), std::string(size, 'x'));
    }
}

TEST(TextFile, CannotBeReadWhenItIsNotThereOrAFolder) {
    FixtureMachine const machine;
    EXPECT_EQ(ReadText(machine.Folder() + "/nothing"), std::nullopt);
    EXPECT_EQ(ReadText(machine.Folder()), std::nullopt);
    EXPECT_EQ(ReadFirstLine(machine.Folder()), std::nullopt);
}

TEST(TextFile, HasAFirstLine) {
    FixtureMachine const machine;
    for (auto const& [text, line] : {std::pair("a\nb\n", "a"), {"a", "a"}, {"\na", ""}, {"", ""}}) {
        machine.Write("file", text);
        EXPECT_EQ(ReadFirstLine(machine.Folder() + "/file"), line);
    }
}

TEST(Words, AreCutAtBlanksAndTabs) {
    EXPECT_EQ(Words(""), Texts());
    EXPECT_EQ(Words(" \t "), Texts());
    EXPECT_EQ(Words("a"), Texts({"a"}));
    EXPECT_EQ(Words("  a\t bc "), Texts({"a", "bc"}));
}

TEST(Lines, AreCutAtNewlines) {
    EXPECT_EQ(Lines(""), Texts());
    EXPECT_EQ(Lines("a"), Texts({"a"}));
    EXPECT_EQ(Lines("a\n\nb\n"), Texts({"a", "", "b"}));
}

}  // namespace
