// The page as Quillo's tree.
#ifndef QUILLO_BENCH_PAGE_QUILLO_TREE_HPP
#define QUILLO_BENCH_PAGE_QUILLO_TREE_HPP

#include <quillo>

#include "page/contender.hpp"

namespace Bench {

Quillo::Element MakeTree(PageData const& data);

// Renders `tree` behind `text`.
void AppendTree(Quillo::Element const& tree, std::string& text);

}  // namespace Bench

#endif
