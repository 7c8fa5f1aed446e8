// Letters and digits are those of the process's locale. The 8-bit locale is made by the build.
#include <gtest/gtest.h>

#include <clocale>
#include <quillo>

using namespace Quillo;

namespace {

TEST(Locale, ByteE9IsALetterInLatin1AndNoneInTheCLocale) {
    std::string const eAcute = "\xE9";
    EXPECT_EQ(PcntEncode(eAcute), "%E9");
    ASSERT_NE(std::setlocale(LC_CTYPE, "de_DE.ISO-8859-1"), nullptr)
        << "the locale that the build made was not found; LOCPATH names its folder";
    EXPECT_EQ(PcntEncode(eAcute), eAcute);
    EXPECT_EQ(PcntEncode("\xD7"), "%D7") << "the multiplication sign is no letter";
    EXPECT_EQ(Filter(eAcute + "<\xD7"), eAcute + "&lt;\xD7") << "top-bit bytes pass either way";
    std::setlocale(LC_CTYPE, "C");
    EXPECT_EQ(PcntEncode(eAcute), "%E9");
}

}  // namespace
