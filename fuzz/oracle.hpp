// What a fuzz target expects of the code it tries. What does not hold ends the process, behind a
// line that says which rule was broken, and by what.
#ifndef QUILLO_FUZZ_ORACLE_HPP
#define QUILLO_FUZZ_ORACLE_HPP

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

// The target's own check of one input; each target defines it.
void Check(std::string const& input);

[[noreturn]] void Fail(std::string_view rule, std::string_view detail);

inline void Expect(bool holds, std::string_view rule, std::string_view detail = {}) {
    if (!holds) {
        Fail(rule, detail);
    }
}

// A value as it stands in a message: texts between quotes, with \xNN for what is not printable.
std::string Shown(std::string const& text);
inline std::string Shown(char const* text) {
    return text != nullptr ? Shown(std::string(text)) : "(null)";
}
template <class Number, class = std::enable_if_t<std::is_arithmetic<Number>::value>>
std::string Shown(Number number) {
    return std::to_string(number);
}
template <class First, class Second>
std::string Shown(std::pair<First, Second> const& pair);
template <class Value>
std::string Shown(std::optional<Value> const& value);

template <class Range>
auto Shown(Range const& range) -> decltype(range.begin(), std::string()) {
    std::string shown = "{";
    for (auto const& value : range) {
        shown += (shown.size() > 1 ? ", " : "") + Shown(value);
    }
    return shown + "}";
}
template <class First, class Second>
std::string Shown(std::pair<First, Second> const& pair) {
    return Shown(pair.first) + ": " + Shown(pair.second);
}
template <class Value>
std::string Shown(std::optional<Value> const& value) {
    return value ? Shown(*value) : "(nothing)";
}

template <class Actual, class Expected>
void ExpectEqual(Actual const& actual, Expected const& expected, std::string_view rule) {
    if (!(actual == expected)) {
        Fail(rule, "is        " + Shown(actual) + "\nshould be " + Shown(expected));
    }
}

#endif
