// FOLDER/de-de/LC_MESSAGES/quillo.mo holds the German phrases. Every folder that has such a file,
// and a name of the form de-de, is a language of the service.
//
// A file is a gettext catalog. It begins with seven 32-bit words, all in the one or in the other
// byte order:
//
//     magic  revision  N  place of the phrases  place of the translations  hash size  its place
//
// The phrases and the translations are N pairs of words each, the length and the place of a text
// that ends in a zero byte. The first phrase is empty, and its translation is the catalog's header.
// The hash table holds words up to N. All of this is checked before the catalog is used, since
// Boost.Locale relies on it when it looks for a phrase.
#include "host/catalogs.hpp"

#include <algorithm>
#include <boost/locale.hpp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <locale>
#include <map>
#include <new>
#include <stdexcept>

#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

namespace fs = std::filesystem;
namespace bl = boost::locale;

struct Catalogs {
    std::vector<std::string> names;
    std::map<std::string, std::locale> locales;
};

std::optional<std::string> chosenFolder;
std::optional<Catalogs> loadedCatalogs;

std::string Folder() {
    if (chosenFolder) {
        return *chosenFolder;
    }
    char const* const named = std::getenv("QUILLO_CATALOG_DIR");
    return named != nullptr ? named : QUILLO_CATALOG_DIR;
}

std::string FileIn(std::string const& folder, std::string const& name) {
    return folder + "/" + name + "/LC_MESSAGES/quillo.mo";
}

// The form de-de.
bool IsName(std::string const& name) {
    static char const letters[] = "abcdefghijklmnopqrstuvwxyz";
    return name.size() == 5 && name[2] == '-' && name.find_first_not_of(letters) == 2 &&
           name.find_first_not_of(letters, 3) == std::string::npos;
}

void Require(bool isSo, char const* otherwise) {
    if (!isSo) {
        throw std::runtime_error(otherwise);
    }
}

// The words of a catalog.
class Words32 {
public:
    explicit Words32(std::string const& catalog) : bytes(catalog) {
        Require(bytes.size() >= 28, "it is too short");
        isSwapped = At(0) == 0xDE120495;
        Require(At(0) == 0x950412DE, "it is no gettext catalog");
    }

    std::uint32_t At(std::uint64_t place) const {
        Require(place + 4 <= bytes.size(), "it is cut off");
        std::uint32_t word = 0;
        std::memcpy(&word, bytes.data() + place, 4);
        return isSwapped ? __builtin_bswap32(word) : word;
    }

private:
    std::string const& bytes;
    bool isSwapped = false;
};

void CheckText(std::string const& bytes, std::uint64_t length, std::uint64_t place) {
    Require(place + length < bytes.size(), "it is cut off");
    Require(bytes[place + length] == '\0', "a text in it has no end");
}

void CheckHash(Words32 const& words, std::uint32_t count) {
    std::uint32_t const size = words.At(20);
    Require(size == 0 || size > 2, "its hash table is damaged");
    for (std::uint64_t i = 0; i < size; ++i) {
        Require(words.At(words.At(24) + 4 * i) <= count, "its hash table is damaged");
    }
}

// Throws what is wrong with the catalog `bytes`.
void Check(std::string const& bytes) {
    Words32 const words(bytes);
    std::uint32_t const count = words.At(8);
    for (std::uint64_t const table : {words.At(12), words.At(16)}) {
        for (std::uint64_t i = 0; i < count; ++i) {
            CheckText(bytes, words.At(table + 8 * i), words.At(table + 8 * i + 4));
        }
    }
    Require(count != 0 && words.At(words.At(12)) == 0, "it has no header");
    CheckHash(words, count);
}

// Throws what is wrong with the catalog. Boost.Locale, which is lenient towards a file that it
// cannot read, is given the bytes rather than the file.
std::locale Load(std::string const& folder, std::string const& name) {
    std::optional<std::string> const bytes = ReadText(FileIn(folder, name));
    Require(bytes.has_value(), "it cannot be opened, or not be read");
    Check(*bytes);
    bl::gnu_gettext::messages_info info;
    info.language = name;
    info.encoding = "UTF-8";
    info.paths.push_back(folder);
    info.domains.push_back(bl::gnu_gettext::messages_info::domain("quillo"));
    info.callback = [&bytes](std::string const&, std::string const&) {
        return std::vector<char>(bytes->begin(), bytes->end());
    };
    bl::localization_backend_manager backends = bl::localization_backend_manager::global();
    backends.select("std");
    bl::generator generator(backends);
    generator.categories(bl::information_facet);
    std::locale const base = generator.generate(std::locale::classic(), "C.UTF-8");
    return std::locale(base, bl::gnu_gettext::create_messages_facet<char>(info));
}

// A catalog that cannot be read costs its own language alone; want of memory is no fault of it.
void LoadInto(Catalogs& catalogs, std::string const& folder, std::string const& name) {
    try {
        catalogs.locales[name] = Load(folder, name);
        catalogs.names.push_back(name);
    } catch (std::bad_alloc const&) {
        throw;
    } catch (std::exception const& problem) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                      "catalog %s cannot be read, its language is not offered: %s",
                      FileIn(folder, name).c_str(), problem.what());
    }
}

// Whether the catalog is there: a file, or what cannot even be asked, but no folder or device.
bool IsThere(std::string const& file) {
    std::error_code ignored;
    fs::file_type const type = fs::status(file, ignored).type();
    return type == fs::file_type::regular || type == fs::file_type::none ||
           type == fs::file_type::unknown;
}

Catalogs LoadAll(std::string const& folder) {
    Catalogs catalogs;
    std::error_code error;
    fs::directory_iterator const end;
    for (fs::directory_iterator i(folder, error); !error && i != end; i.increment(error)) {
        std::string const name = i->path().filename().string();
        if (IsName(name) && IsThere(FileIn(folder, name))) {
            LoadInto(catalogs, folder, name);
        }
    }
    if (catalogs.names.empty()) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__,
                      "no catalog in %s%s%s: phrases are not translated; QUILLO_CATALOG_DIR names "
                      "the folder of the catalogs",
                      folder.c_str(), error ? " - " : "", error ? error.message().c_str() : "");
    }
    std::sort(catalogs.names.begin(), catalogs.names.end());
    return catalogs;
}

Catalogs const& TheCatalogs() {
    if (!loadedCatalogs) {
        loadedCatalogs = LoadAll(Folder());
    }
    return *loadedCatalogs;
}

}  // namespace

std::vector<std::string> const& CatalogNames() {
    return TheCatalogs().names;
}

std::optional<std::string> FindTranslation(std::string const& catalog, std::string const& phrase) {
    auto const locale = TheCatalogs().locales.find(catalog);
    if (locale == TheCatalogs().locales.end()) {
        return std::nullopt;
    }
    auto const& messages = std::use_facet<bl::message_format<char>>(locale->second);
    char const* const translation = messages.get(0, nullptr, phrase.c_str());
    return translation != nullptr ? std::optional<std::string>(translation) : std::nullopt;
}

void SetCatalogFolder(std::string const& folder) {
    chosenFolder = folder;
    loadedCatalogs.reset();
}

}  // namespace QuilloHost
