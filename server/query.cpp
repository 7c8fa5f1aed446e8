#include "query.hpp"

#include <quillo>
#include <vector>

namespace QuilloServer {

std::string QueryArgument(std::string const& query, std::string const& name) {
    std::vector<std::string> fields;
    Quillo::Split(query, "&", fields, Quillo::SkipEmpty);
    std::string value;
    for (std::string const& field : fields) {
        if (field.compare(0, name.size() + 1, name + "=") == 0) {
            value = Quillo::PcntDecode(field.c_str() + name.size() + 1, nullptr);
        }
    }
    return value;
}

}  // namespace QuilloServer
