#include "catalog_phrases.hpp"

#include <gtest/gtest.h>

#include <fstream>

namespace {

// What stands between the quotes behind `keyword`; false for a line of another kind.
bool TakeText(std::string const& line, std::string const& keyword, std::string& text) {
    std::string const start = keyword + " \"";
    if (line.compare(0, start.size(), start) != 0) {
        return false;
    }
    text = line.substr(start.size(), line.size() - start.size() - 1);
    return true;
}

}  // namespace

std::map<std::string, std::string> CatalogPhrases(std::string const& name) {
    std::string const path = std::string(QUILLO_CATALOG_SOURCES) + "/" + name + ".po";
    std::ifstream file(path);
    EXPECT_TRUE(file) << path << " cannot be read";
    std::map<std::string, std::string> phrases;
    std::string phrase;
    std::string translation;
    for (std::string line; std::getline(file, line);) {
        if (!TakeText(line, "msgid", phrase) && TakeText(line, "msgstr", translation)) {
            phrases[phrase] = translation;
        }
    }
    return phrases;
}
