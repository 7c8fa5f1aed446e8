// Catalogs that are damaged, or that are none.
#include "host/catalogs.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "host/host.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/plain_user.hpp"
#include "platform/shipped_catalog.hpp"
#include "temp_folder.hpp"

using namespace QuilloHost;

namespace {

namespace fs = std::filesystem;

class CatalogsTest : public ::testing::Test {
protected:
    CatalogsTest() {
        folder.Write("en-us/LC_MESSAGES/quillo.mo", good.bytes);
        fs::create_directories(fs::path(File()).parent_path());
    }

    std::string File() const { return folder.path + "/de-de/LC_MESSAGES/quillo.mo"; }

    void WriteGerman(std::string const& bytes) const {
        folder.Write("de-de/LC_MESSAGES/quillo.mo", bytes);
    }

    // Reads the catalogs anew and looks up every phrase, in German; returns what was logged.
    std::string Use() const {
        CapturedStderr const captured;
        SetCatalogFolder(folder.path);
        for (std::size_t row = good.Word(12); row < good.Word(12) + 8 * good.Word(8); row += 8) {
            FindTranslation("de-de", &good.bytes[good.Word(row + 4)]);
        }
        FindTranslation("de-de", "no phrase of the catalog");
        return captured.Text();
    }

    static bool IsOffered() { return CatalogNames() == std::vector<std::string>{"de-de", "en-us"}; }

    // German is left out, behind one entry that names the file and says what to do.
    void ExpectLeftOut(std::string const& why) const {
        std::string const log = Use();
        EXPECT_EQ(CatalogNames(), std::vector<std::string>{"en-us"});
        EXPECT_EQ(FindTranslation("de-de", "Storage"), std::nullopt);
        EXPECT_NE(
            log.find("catalog " + File() + " cannot be read, its language is not offered: " + why),
            std::string::npos)
            << log;
        EXPECT_NE(log.find(": install it anew, or make it with msgfmt\n"), std::string::npos);
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    }

    ShippedCatalog const good;
    TempFolder const folder;
};

TEST_F(CatalogsTest, AreReadInBothByteOrders) {
    for (std::string const& bytes : {good.bytes, good.Swapped()}) {
        WriteGerman(bytes);
        EXPECT_EQ(Use(), "");
        EXPECT_TRUE(IsOffered());
        EXPECT_EQ(FindTranslation("de-de", "Storage"), "Speicher");
    }
}

TEST_F(CatalogsTest, AreLeftOutWhenTheyAreCutShortAnywhere) {
    for (std::size_t size = 0; size < good.bytes.size(); ++size) {
        SCOPED_TRACE(size);
        WriteGerman(good.bytes.substr(0, size));
        ExpectLeftOut("");
    }
}

TEST_F(CatalogsTest, AreUsableOrLeftOutWhicheverByteIsDamaged) {
    int leftOut = 0;
    for (std::size_t at = 0; at < good.bytes.size(); ++at) {
        for (int const flipped : {0x01, 0x80, 0xFF}) {
            std::string damaged = good.bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ flipped);
            WriteGerman(damaged);
            std::string log;
            ASSERT_NO_THROW(log = Use()) << at;
            EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), IsOffered() ? 0 : 1) << log;
            leftOut += IsOffered() ? 0 : 1;
        }
    }
    EXPECT_GT(leftOut, 100);
}

TEST_F(CatalogsTest, AreLeftOutWhenSomethingElseIsInTheirPlace) {
    fs::create_directory(File());
    ExpectLeftOut("it is no file that this process may read");
    fs::remove(File());
    ASSERT_EQ(mkfifo(File().c_str(), 0600), 0);
    ExpectLeftOut("it is no file that this process may read");
    fs::remove(File());
    fs::create_symlink(File(), File());
    ExpectLeftOut("");
}

TEST_F(CatalogsTest, AreLeftOutWhenTheyMayNotBeRead) {
    WriteGerman(good.bytes);
    PlainUser const user;
    fs::permissions(File(), fs::perms::none);
    ExpectLeftOut("it is no file that this process may read");
    fs::path const place = fs::path(File()).parent_path();
    fs::permissions(place, fs::perms::none);
    ExpectLeftOut("");
    fs::permissions(place, fs::perms::owner_all);
}

TEST_F(CatalogsTest, AreNotMissedWhereThereIsNone) {
    folder.Write("DE-DE/LC_MESSAGES/quillo.mo", "");
    folder.Write("fr-fr/LC_MESSAGES/other.mo", "");
    EXPECT_EQ(Use(), "");
    EXPECT_EQ(CatalogNames(), std::vector<std::string>{"en-us"});
}

TEST_F(CatalogsTest, AreMissedWhereTheirFolderHasNone) {
    for (std::string const& empty : {folder.path + "/en-us", folder.path + "/nowhere"}) {
        CapturedStderr const captured;
        SetCatalogFolder(empty);
        EXPECT_EQ(CatalogNames(), std::vector<std::string>());
        EXPECT_NE(
            captured.Text().find("no catalog in \"" + empty + "\": phrases are not translated"),
            std::string::npos)
            << captured.Text();
    }
}

// Ends the process, which has not been told its folder: with 0 when these are its catalogs.
[[noreturn]] void ExitByCatalogs(char const* variable, std::vector<std::string> const& expected) {
    setenv("QUILLO_CATALOG_DIR", variable, 1);
    std::_Exit(CatalogNames() == expected ? 0 : 1);
}

TEST(CatalogsDeathTest, AnEmptyVariableNamesNoFolder) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::vector<std::string> const shipped = {"ar-eg", "de-de", "en-us"};
    EXPECT_EXIT(ExitByCatalogs("", shipped), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(ExitByCatalogs("/nowhere", {}), testing::ExitedWithCode(0),
                "no catalog in \"/nowhere\"");
}

}  // namespace
