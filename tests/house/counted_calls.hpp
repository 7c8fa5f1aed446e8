// Calls whose instructions callgrind counts one by one.
#ifndef QUILLO_TESTS_COUNTED_CALLS_HPP
#define QUILLO_TESTS_COUNTED_CALLS_HPP

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

typedef std::function<void(std::string const& text)> Call;
typedef std::function<std::string(std::size_t size)> MakeText;

// Calls `call` with texts of 16 KiB and of 32 KiB. Under callgrind each call is a part of its
// output by itself, named "FUNCTION, TEXT/BYTES": `name`, which is "FUNCTION, TEXT", and the size.
void CountCalls(std::string const& name, Call const& call, MakeText const& makeText);

// The same with each of the patterns, over and over.
void CountPatterns(std::string const& function, Call const& call,
                   std::vector<std::string> const& patterns);

// Texts of pieces of which no two are the same: `piece` over and over, with its number for each
// '#'.
MakeText Numbered(std::string const& piece);

#endif
