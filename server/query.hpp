// One argument of a query text.
#ifndef QUILLO_SERVER_QUERY_HPP
#define QUILLO_SERVER_QUERY_HPP

#include <string>

namespace QuilloServer {

// The decoded value of the last argument `name` in `query`; empty when there is none.
//
//     "a=1&LANGUAGE=de%2Dde" and "LANGUAGE"    de-de
std::string QueryArgument(std::string const& query, std::string const& name);

}  // namespace QuilloServer

#endif
