// The catalogs of the languages when the system refuses a call: each of the calls by itself.
#include <dirent.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "host/catalogs.hpp"
#include "host/host.hpp"
#include "platform/refused_calls_fixture.hpp"
#include "platform/shipped_catalog.hpp"
#include "platform/temp_folder.hpp"

using namespace QuilloHost;

namespace {

class RefusedCatalogsTest : public RefusedCallsTest {
protected:
    RefusedCatalogsTest() {
        ShippedCatalog const german;
        size = german.bytes.size();
        for (std::string const& name : languages) {
            folder.Write(name + "/LC_MESSAGES/quillo.mo", german.bytes);
        }
    }

    // The names of the languages, read anew, and what is logged on the way.
    std::vector<std::string> Names() {
        CapturedStderr const captured;
        SetCatalogFolder(folder.path);
        std::vector<std::string> const names = CatalogNames();
        log = captured.Text();
        return names;
    }

    // The languages whose files are refused are missing, each behind an entry.
    void ExpectLeftOut(std::function<bool(int)> const& isRefused) {
        std::vector<std::string> const names = Names();
        std::vector<std::string> left;
        for (int i = 0; i < 3; ++i) {
            std::string const& name = languages[static_cast<std::size_t>(i)];
            bool const hasEntry =
                log.find("catalog " + folder.path + "/" + name +
                         "/LC_MESSAGES/quillo.mo cannot be read, its language is not offered: it "
                         "is no file that this process may read") != std::string::npos;
            EXPECT_EQ(hasEntry, isRefused(i)) << log;
            if (!isRefused(i)) {
                left.push_back(name);
            }
        }
        EXPECT_EQ(names, left);
        EXPECT_EQ(static_cast<std::size_t>(std::count(log.begin(), log.end(), '\n')),
                  languages.size() - left.size())
            << log;
    }

    // What the folder of the catalogs gives.
    std::vector<std::string> EntriesInTheirOrder() const {
        std::vector<std::string> entries;
        DIR* const list = opendir(folder.path.c_str());
        while (dirent const* const entry = readdir(list)) {
            entries.emplace_back(entry->d_name);
        }
        closedir(list);
        return entries;
    }

    void ExpectEntry(std::string const& said) const {
        EXPECT_NE(log.find(said), std::string::npos) << log;
    }

    std::vector<std::string> const languages = {"ar-eg", "de-de", "en-us"};
    std::size_t size = 0;  // of a catalog
    TempFolder const folder;
    std::string log;
};

TEST_F(RefusedCatalogsTest, AFolderThatIsNotOpenedIsReportedWithTheReason) {
    for (int error : {EACCES, EMFILE, ENFILE, ENOMEM, ENOTDIR}) {
        auto const check = [&](auto const& isRefused) {
            EXPECT_EQ(Names(), isRefused(0) ? std::vector<std::string>() : languages);
            EXPECT_EQ(log == "", !isRefused(0)) << log;
            if (isRefused(0)) {
                ExpectEntry("the folder of the catalogs, \"" + folder.path +
                            "\", cannot be read - " + std::strerror(error));
                ExpectEntry("phrases are not translated");
            }
        };
        EXPECT_EQ(RefuseEach("opendir", error, check), 1);
    }
}

TEST_F(RefusedCatalogsTest, AFolderThatBreaksOffIsReportedAndHasTheLanguagesBeforeThat) {
    std::vector<std::string> const entries = EntriesInTheirOrder();
    ASSERT_EQ(entries.size(), 5U) << "the languages and two more";
    for (int error : {EBADF, EIO, EOVERFLOW}) {
        auto const check = [&](auto const& isRefused) {
            std::vector<std::string> const names = Names();
            std::vector<std::string> given;
            for (int i = 0; i < 5 && !isRefused(i); ++i) {
                given.push_back(entries[static_cast<std::size_t>(i)]);
            }
            for (std::string const& language : languages) {
                EXPECT_EQ(std::count(names.begin(), names.end(), language),
                          std::count(given.begin(), given.end(), language))
                    << language;
            }
            EXPECT_EQ(log == "", !calls.hasFailed) << log;
            if (calls.hasFailed) {
                ExpectEntry(std::string("cannot be read - ") + std::strerror(error) +
                            ": languages may be missing");
            }
        };
        EXPECT_EQ(RefuseEach("readdir", error, check), 6) << "the entries and the end";
    }
}

TEST_F(RefusedCatalogsTest, AFolderThatIsGoneHasNoLanguage) {
    for (char const* call : {"opendir", "readdir"}) {
        Refuse(call, {ENOENT});
        EXPECT_EQ(Names(), std::vector<std::string>());
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
        ExpectEntry("no catalog in");
    }
}

TEST_F(RefusedCatalogsTest, AFileThatIsNotReadIsLeftOutAndTheOthersAreNot) {
    for (int error : {EACCES, EAGAIN, EINTR, EIO, ELOOP, EMFILE, ENAMETOOLONG, ENFILE, ENOMEM,
                      ENXIO, EOVERFLOW}) {
        auto const check = [&](auto const& isRefused) { ExpectLeftOut(isRefused); };
        EXPECT_EQ(RefuseEach("fopen", error, check), 3);
        for (std::size_t bytes : {std::size_t{0}, std::size_t{1}, size - 1, size}) {
            calls.bytes = bytes;
            EXPECT_EQ(RefuseEach("fread", error, check), 3);
        }
        // All are looked at to see which there are, and what cannot be seen may be there.
        EXPECT_EQ(RefuseEach("stat", error,
                             [&](auto const& isRefused) {
                                 ExpectLeftOut([&](int file) { return isRefused(3 + file); });
                             }),
                  6);
    }
}

}  // namespace
