// The catalogs of the translation service: gettext's, read through Boost.Locale, one std::locale a
// language. The global locale stays as it is.
#ifndef QUILLO_HOST_CATALOGS_HPP
#define QUILLO_HOST_CATALOGS_HPP

#include <optional>
#include <string>
#include <vector>

namespace QuilloHost {

// The names of the catalogs there are, ascending: ar-eg, de-de, en-us.
std::vector<std::string> const& CatalogNames();

// The translation of `phrase` in the catalog of that name; nothing when it has none.
std::optional<std::string> FindTranslation(std::string const& catalog, std::string const& phrase);

}  // namespace QuilloHost

#endif
