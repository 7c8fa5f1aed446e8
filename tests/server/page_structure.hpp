// What a browser makes of a page, apart from its texts.
#ifndef QUILLO_TESTS_SERVER_PAGE_STRUCTURE_HPP
#define QUILLO_TESTS_SERVER_PAGE_STRUCTURE_HPP

#include <set>
#include <string>

// The elements of `html` as the HTML Standard reads it, one in the other, with the names of their
// attributes; comments; what scripts and style sheets say; and where links, forms and the like lead
// to, without arguments:
//
//     <p class="x">a <a href="/log?text=b">c</a></p>    p class(a href=/log())
std::string StructureOf(std::string const& html);

// The same, but the rows of tables are left out of it and put into `rows`.
std::string StructureWithoutRows(std::string const& html, std::set<std::string>& rows);

#endif
