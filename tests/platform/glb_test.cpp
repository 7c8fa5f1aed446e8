#include <glb.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(GlbThrowError, ThrowsAnErrorWithLineFileAndMessage) {
    static char const file[] = "src/a.cpp";
    try {
        Glb::ThrowError("it broke", 12, file);
        FAIL() << "nothing was thrown";
    } catch (Glb::Error const& error) {
        EXPECT_EQ(error.line(), 12);
        EXPECT_EQ(error.file(), file);
        EXPECT_EQ(error.message(), "it broke");
        EXPECT_STREQ(error.what(), "it broke");
    }
}

TEST(GlbStrcmp, OrdersByUnsignedBytes) {
    EXPECT_EQ(Glb_strcmp("", ""), 0);
    EXPECT_EQ(Glb_strcmp("a", "a"), 0);
    EXPECT_LT(Glb_strcmp("a", "b"), 0);
    EXPECT_GT(Glb_strcmp("b", "a"), 0);
    EXPECT_LT(Glb_strcmp("a", "ab"), 0);
    EXPECT_LT(Glb_strcmp("a", "\xff"), 0);
    EXPECT_LT(Glb_strcmp("B", "a"), 0);
}

TEST(GlbStrcmp, TakesNullForEqualToNullAlone) {
    EXPECT_EQ(Glb_strcmp(nullptr, nullptr), 0);
    EXPECT_LT(Glb_strcmp(nullptr, ""), 0);
    EXPECT_GT(Glb_strcmp("", nullptr), 0);
}

TEST(GlbContainers, GiveASignedSizeAndOneElementMore) {
    EXPECT_EQ(Glb::isize(std::string("four")), 4);
    std::vector<std::string> texts = {"a"};
    Glb::extend_one(texts) = "b";
    EXPECT_EQ(texts, (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(Glb::isize(texts), 2);
}

}  // namespace
