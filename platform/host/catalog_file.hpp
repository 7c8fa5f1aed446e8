// A catalog as msgfmt writes it, checked before it is used.
#ifndef QUILLO_HOST_CATALOG_FILE_HPP
#define QUILLO_HOST_CATALOG_FILE_HPP

#include <string>

namespace QuilloHost {

// What is wrong with the structure of a catalog of these bytes; null for nothing. A reader that
// trusts the numbers of a whole one stays within the bytes, and comes to an end.
char const* DamageOf(std::string const& bytes);

}  // namespace QuilloHost

#endif
