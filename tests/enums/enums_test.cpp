#include <climits>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

// Another file's static initialisation may come before or after the library's.
std::string const earlyText = ToCstr(LoaContext_Both);
int const earlyPixels = GetPixelSize(IconSize_Huge);

template <class E>
struct Companions {
    std::string name;
    std::vector<std::string> texts;
    std::string fallback;
    E const* values;
    int length;
    E first;
    E last;
};

class EnumsTest : public PageTest {
protected:
    template <class E>
    void Check(Companions<E> const& c) {
        SCOPED_TRACE(c.name);
        int const count = static_cast<int>(c.texts.size());
        ASSERT_EQ(c.length, count);
        EXPECT_EQ(c.first, c.values[0]);
        EXPECT_EQ(c.last, c.values[count - 1]);
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(c.values[i], i);
            EXPECT_EQ(ToCstr(static_cast<E>(i)), c.texts[static_cast<std::size_t>(i)]);
            E value = static_cast<E>(77);
            EXPECT_FALSE(FromCstr(c.texts[static_cast<std::size_t>(i)].c_str(), value));
            EXPECT_EQ(value, i);
        }
        for (int const number : {count, -1, INT_MIN, INT_MAX}) {
            EXPECT_EQ(ToCstr(static_cast<E>(number)), c.fallback);
        }
        for (char const* const text : {"", "Center", "centre", " top", "top ", "SMALL", "loaX"}) {
            E value = static_cast<E>(77);
            EXPECT_TRUE(FromCstr(text, value)) << text;
            EXPECT_EQ(value, 77);
        }
        E value = static_cast<E>(77);
        EXPECT_TRUE(FromCstr(nullptr, value));
        EXPECT_EQ(value, 77);
    }

    template <class E>
    void CheckRange(int count) {
        for (int number = 0; number < count; ++number) {
            EXPECT_TRUE(IsValid(static_cast<E>(number)));
        }
        for (int const number : {-1, count, INT_MIN, INT_MAX}) {
            EXPECT_FALSE(IsValid(static_cast<E>(number))) << number;
        }
    }
};

#define COMPANIONS(E) E##_ENUMS, E##_ENUMS_LEN, E##_FIRST, E##_LAST

TEST_F(EnumsTest, EveryVocabularyHasItsTextsAndTables) {
    Check<LoaContext>({"LoaContext",
                       {"unspecified", "none", "html", "js", "php", "both"},
                       "unknown-LoaContext",
                       COMPANIONS(LoaContext)});
    Check<ValignType>(
        {"ValignType", {"top", "middle", "bottom"}, "unknown-ValignType", COMPANIONS(ValignType)});
    Check<AlignType>(
        {"AlignType", {"left", "center", "right"}, "unknown-AlignType", COMPANIONS(AlignType)});
    Check<ObjectType>(
        {"ObjectType", {"loa", "con", "sys"}, "unknown-ObjectType", COMPANIONS(ObjectType)});
    Check<AuthAccessMethod>({"AuthAccessMethod",
                             {"non-secure", "secure", "hidden"},
                             "unknown-AuthAccessMethod",
                             COMPANIONS(AuthAccessMethod)});
    Check<SmartcardEnablement>({"SmartcardEnablement",
                                {"disabled", "alwaysOn", "editable"},
                                "unknown-SmartcardEnablement",
                                COMPANIONS(SmartcardEnablement)});
    Check<IconSize>(
        {"IconSize", {"Small", "Normal", "Large", "Huge"}, "Small", COMPANIONS(IconSize)});
}

TEST_F(EnumsTest, TheEnumeratorsHaveTheirNumbers) {
    EXPECT_EQ(LoaContext_Unspecified, 0);
    EXPECT_EQ(LoaContext_None, 1);
    EXPECT_EQ(LoaContext_Html, 2);
    EXPECT_EQ(LoaContext_Js, 3);
    EXPECT_EQ(LoaContext_Php, 4);
    EXPECT_EQ(LoaContext_Both, 5);
    EXPECT_EQ(ObjectType_Loa, 0);
    EXPECT_EQ(ObjectType_Con, 1);
    EXPECT_EQ(ObjectType_Sys, 2);
    EXPECT_EQ(AuthAccessMethod_NonSecure, 0);
    EXPECT_EQ(AuthAccessMethod_Secure, 1);
    EXPECT_EQ(SmartcardEnablement_AlwaysOn, 1);
    EXPECT_EQ(ValignType_Bottom, 2);
    EXPECT_EQ(AlignType_Right, 2);
    EXPECT_EQ(IconSize_Huge, 3);
    EXPECT_EQ(sizeof(LoaContext), sizeof(int));
}

TEST_F(EnumsTest, ANumberIsValidInItsRangeAlone) {
    CheckRange<LoaContext>(6);
    CheckRange<ValignType>(3);
    CheckRange<AlignType>(3);
    CheckRange<ObjectType>(3);
    CheckRange<AuthAccessMethod>(3);
    CheckRange<SmartcardEnablement>(3);
}

TEST_F(EnumsTest, EveryNumberIsAValidIconSize) {
    for (int const number : {0, 3, 4, 7, -1, INT_MIN, INT_MAX}) {
        EXPECT_TRUE(IsValid(static_cast<IconSize>(number)));
    }
}

TEST_F(EnumsTest, IconsHaveFourSizesAndTheSmallOneForAnyOtherNumber) {
    struct Row {
        int number;
        int pixels;
    };
    for (Row const& row :
         {Row{0, 16}, Row{1, 24}, Row{2, 32}, Row{3, 48}, Row{4, 16}, Row{-1, 16}}) {
        EXPECT_EQ(GetPixelSize(static_cast<IconSize>(row.number)), row.pixels);
    }
}

TEST_F(EnumsTest, ThePlatformDecidesWhetherTextsAreEqualInAscendingOrder) {
    std::vector<std::string> compared;
    Platform().compare = [&](char const* left, char const* right) {
        compared.push_back(std::string(left) + "?" + right);
        return std::string(right) == "center" ? 0 : 1;
    };
    AlignType value = AlignType_Left;
    EXPECT_FALSE(FromCstr("anything", value));
    EXPECT_EQ(value, AlignType_Center);
    EXPECT_EQ(compared, (std::vector<std::string>{"anything?left", "anything?center"}));
}

TEST_F(EnumsTest, TextsDoNotDependOnTheOrderOfInitialisation) {
    EXPECT_EQ(earlyText, "both");
    EXPECT_EQ(earlyPixels, 48);
}

}  // namespace
