// The encoders' forms for strings and numbers.
#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {

std::string PcntEncode(std::string const& text) {
    return PcntEncode(text.c_str());
}

std::string AddSlashes(std::string const& text) {
    return AddSlashes(text.c_str());
}

std::string EscapeJavascriptString(int number) {
    return Joined({number});
}

}  // namespace Quillo
