// FOLDER/de-de/LC_MESSAGES/quillo.mo holds the German phrases. Every folder that has such a file,
// and a name of the form de-de, is a language of the service.
#include "host/catalogs.hpp"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <boost/locale.hpp>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <locale>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/catalog_file.hpp"
#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

namespace bl = boost::locale;
namespace fs = std::filesystem;

struct FolderCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

struct Catalogs {
    std::vector<std::string> names;
    std::map<std::string, std::locale> locales;
};

std::optional<std::string> chosenFolder;
std::optional<Catalogs> loadedCatalogs;

// Found by the library's own place, so that the installation may be moved as a whole.
std::string DefaultFolder() {
    Dl_info self{};
    bool const isFound = dladdr(&loadedCatalogs, &self) != 0;
    std::error_code error;
    fs::path const library = fs::canonical(isFound ? self.dli_fname : "", error);
    return (library.parent_path() / QUILLO_CATALOGS_FROM_LIBRARY).lexically_normal().string();
}

std::string Folder() {
    if (chosenFolder) {
        return *chosenFolder;
    }
    char const* const named = std::getenv("QUILLO_CATALOG_DIR");
    return named != nullptr && *named != '\0' ? named : DefaultFolder();
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

// What is there may be out of this process's reach.
bool IsThere(std::string const& file) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool IsRegularFile(std::string const& file) {
    struct stat status {};
    return stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// The file's bytes. Throws what is wrong with it.
std::vector<char> ReadCatalog(std::string const& file) {
    // A pipe, for one, would never end.
    std::optional<std::string> const text = IsRegularFile(file) ? ReadText(file) : std::nullopt;
    if (!text) {
        throw std::runtime_error("it is no file that this process may read");
    }
    if (char const* const damage = DamageOf(*text)) {
        throw std::runtime_error(damage);
    }
    return std::vector<char>(text->begin(), text->end());
}

// Throws what is wrong with the catalog, in its structure or in what Boost.Locale makes of it.
std::locale Load(std::string const& folder, std::string const& name) {
    std::vector<char> const bytes = ReadCatalog(FileIn(folder, name));
    bl::gnu_gettext::messages_info info;
    info.language = name;
    info.encoding = "UTF-8";
    info.paths.push_back(folder);
    info.domains.push_back(bl::gnu_gettext::messages_info::domain("quillo"));
    info.callback = [&](std::string const&, std::string const&) { return bytes; };
    bl::localization_backend_manager backends = bl::localization_backend_manager::global();
    backends.select("std");
    bl::generator generator(backends);
    generator.categories(bl::information_facet);
    std::locale const base = generator.generate(std::locale::classic(), "C.UTF-8");
    return std::locale(base, bl::gnu_gettext::create_messages_facet<char>(info));
}

// What is in the folder, as far as the system tells. Not by std::filesystem, which ends the process
// when memory runs out.
std::vector<std::string> EntriesOf(std::string const& folder) {
    std::vector<std::string> entries;
    std::unique_ptr<DIR, FolderCloser> const list(opendir(folder.c_str()));
    if (list != nullptr) {
        errno = 0;  // what tells the end of the folder from one that breaks off
        while (dirent const* const entry = readdir(list.get())) {
            entries.emplace_back(entry->d_name);
            errno = 0;
        }
    }
    if (errno != 0 && errno != ENOENT) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                      "the folder of the catalogs, \"%s\", cannot be read - %s: languages may be "
                      "missing until this process is started anew",
                      folder.c_str(), std::strerror(errno));
    }
    return entries;
}

// The names of the languages that have something in the place of a catalog, ascending.
std::vector<std::string> NamesIn(std::string const& folder) {
    std::vector<std::string> names = EntriesOf(folder);
    auto const isNone = [&](std::string const& name) {
        return !IsName(name) || !IsThere(FileIn(folder, name));
    };
    names.erase(std::remove_if(names.begin(), names.end(), isNone), names.end());
    std::sort(names.begin(), names.end());
    return names;
}

Catalogs LoadAll(std::string const& folder) {
    Catalogs catalogs;
    std::vector<std::string> const names = NamesIn(folder);
    for (std::string const& name : names) {
        try {
            catalogs.locales[name] = Load(folder, name);
            catalogs.names.push_back(name);
        } catch (std::bad_alloc const&) {
            throw;  // nothing is kept, and the next call loads them again
        } catch (std::exception const& problem) {
            Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                          "catalog %s cannot be read, its language is not offered: %s: install it "
                          "anew, or make it with msgfmt",
                          FileIn(folder, name).c_str(), problem.what());
        }
    }
    if (names.empty()) {
        Log_SpecEntry(
            logSpecWarn, __FILE__, __LINE__,
            "no catalog in \"%s\": phrases are not translated; QUILLO_CATALOG_DIR names the "
            "folder of the catalogs",
            folder.c_str());
    }
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
