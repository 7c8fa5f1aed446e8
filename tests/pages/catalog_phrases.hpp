// The catalogs as they are written, for pages on a platform that has no translations of its own.
#ifndef QUILLO_TESTS_CATALOG_PHRASES_HPP
#define QUILLO_TESTS_CATALOG_PHRASES_HPP

#include <map>
#include <string>

// The phrases of pages/catalogs/NAME.po, each with its translation. Texts stand on a line each, as
// they do in these catalogs.
std::map<std::string, std::string> CatalogPhrases(std::string const& name);

#endif
