#ifndef QUILLO_TESTS_OPEN_DESCRIPTORS_HPP
#define QUILLO_TESTS_OPEN_DESCRIPTORS_HPP

#include <set>

// The descriptors that this process has open.
std::set<int> OpenDescriptors();

// Those of them that are not in `before`.
std::set<int> OpenedSince(std::set<int> const& before);

#endif
