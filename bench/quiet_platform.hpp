#ifndef QUILLO_BENCH_QUIET_PLATFORM_HPP
#define QUILLO_BENCH_QUIET_PLATFORM_HPP

#include <string>

namespace Bench {

// What the attribute service answers to a query for an object of the kind "sys". The pipe is made
// as large.
extern std::string answer;

}  // namespace Bench

#endif
