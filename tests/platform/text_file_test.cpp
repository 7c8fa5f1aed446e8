#include <gtest/gtest.h>

#include "host/sys/text_file.hpp"
#include "temp_folder.hpp"

using namespace QuilloHost;

namespace {

TEST(TextFile, AFileIsReadWholeOrNotAtAll) {
    TempFolder const folder;
    folder.Write("text", std::string(10000, 'x') + "\nrest");
    folder.Write("empty", "");
    EXPECT_EQ(ReadText(folder.path + "/text").value().size(), 10005U);
    EXPECT_EQ(ReadFirstLine(folder.path + "/text").value().size(), 10000U);
    EXPECT_EQ(ReadText(folder.path + "/empty").value(), "");
    EXPECT_FALSE(ReadText(folder.path + "/missing").has_value());
    EXPECT_FALSE(ReadText(folder.path).has_value()) << "a folder is no file";
}

TEST(TextFile, WordsAndLines) {
    EXPECT_EQ(Words(" a \t b"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(Words(""), std::vector<std::string>());
    EXPECT_EQ(Lines("a\n\nb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(Lines("a\n"), (std::vector<std::string>{"a"}));
}

}  // namespace
