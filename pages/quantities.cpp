#include "quantities.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace Pages {
namespace {

bool Parse(std::string const& digits, std::uint64_t& number) {
    char const* const end = digits.data() + digits.size();
    auto const result = std::from_chars(digits.data(), end, number);
    return result.ec == std::errc() && result.ptr == end;
}

std::string TwoDigits(std::uint64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string Bytes(std::string const& bytes) {
    static char const* const units[] = {" B", " KiB", " MiB", " GiB", " TiB", " PiB", " EiB"};
    std::uint64_t whole = 0;
    if (!Parse(bytes, whole)) {
        return bytes;
    }
    std::size_t unit = 0;
    std::uint64_t rest = 0;
    while (whole >= 1024) {
        rest = whole % 1024;
        whole /= 1024;
        ++unit;
    }
    if (unit == 0) {
        return std::to_string(whole) + units[unit];
    }
    return std::to_string(whole) + "." + std::to_string(rest * 10 / 1024) + units[unit];
}

std::string Duration(std::string const& seconds) {
    std::uint64_t all = 0;
    if (!Parse(seconds, all)) {
        return seconds;
    }
    std::uint64_t const minutes = all / 60;
    std::string const time = TwoDigits(minutes / 60 % 24) + ":" + TwoDigits(minutes % 60);
    std::uint64_t const days = minutes / 60 / 24;
    return days == 0 ? time : std::to_string(days) + " d " + time;
}

std::string InterfaceState(std::string const& state) {
    if (state == "up") {
        return "Up";
    }
    return state == "down" || state == "lowerlayerdown" ? "Down" : "Not known";
}

std::optional<int> PercentUsed(std::string const& used, std::string const& available) {
    std::uint64_t usedBytes = 0;
    std::uint64_t availableBytes = 0;
    bool const isKnown = Parse(used, usedBytes) && Parse(available, availableBytes);
    double const all = static_cast<double>(usedBytes) + static_cast<double>(availableBytes);
    if (!isKnown || all <= 0) {
        return std::nullopt;
    }
    return static_cast<int>(std::ceil(100 * static_cast<double>(usedBytes) / all));
}

}  // namespace Pages
