// Values of the attribute service in the form people read. Text that is no number comes back as it
// is.
#ifndef QUILLO_PAGES_QUANTITIES_HPP
#define QUILLO_PAGES_QUANTITIES_HPP

#include <optional>
#include <string>

namespace Pages {

// Bytes in the largest binary unit of which there is at least one: "1536" gives "1.5 KiB".
std::string Bytes(std::string const& bytes);

// Seconds as days, hours and minutes: "93784" gives "1 d 02:03".
std::string Duration(std::string const& seconds);

// A phrase for the state of a network interface (RFC 2863, as Linux writes it): "up" gives "Up".
// One that says little to a reader, such as the loopback's "unknown", gives "Not known".
std::string InterfaceState(std::string const& state);

// How much of a file system is used, in whole per cent, rounded up: of what is used and what is
// still to be had, for a part of its size is kept back. Nothing when they are no numbers or both 0.
std::optional<int> PercentUsed(std::string const& used, std::string const& available);

}  // namespace Pages

#endif
