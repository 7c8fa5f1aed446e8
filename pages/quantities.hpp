// Numbers of the attribute service in the form people read. Text that is no number comes back as it
// is.
#ifndef QUILLO_PAGES_QUANTITIES_HPP
#define QUILLO_PAGES_QUANTITIES_HPP

#include <string>

namespace Pages {

// Bytes in the largest binary unit of which there is at least one: "1536" gives "1.5 KiB".
std::string Bytes(std::string const& bytes);

// Seconds as days, hours and minutes: "93784" gives "1 d 02:03".
std::string Duration(std::string const& seconds);

}  // namespace Pages

#endif
