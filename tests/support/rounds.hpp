// How long tests go on that try a rule on made-up input.
#ifndef QUILLO_TESTS_ROUNDS_HPP
#define QUILLO_TESTS_ROUNDS_HPP

#include <algorithm>
#include <cstdlib>

// The rounds of a test that goes through `usual` ones: no more than the environment's
// QUILLO_TEST_ROUNDS, where it is set. Whoever runs each round a thousand times sets it.
inline int Rounds(int usual) {
    char const* const most = std::getenv("QUILLO_TEST_ROUNDS");
    return most != nullptr ? std::min(usual, std::atoi(most)) : usual;
}

#endif
