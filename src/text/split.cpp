// Fields of a text, the order of texts, and texts that may be null.
#include <algorithm>
#include <cstring>
#include <quillo>

namespace Quillo {

void Split(char const* text, std::string const& delimiters, std::vector<std::string>& fields,
           SplitMode mode) {
    std::vector<std::string> found;
    for (char const* p = Cstr(text); *p != '\0';) {
        std::size_t const length = std::strcspn(p, delimiters.c_str());
        if (length != 0 || mode == KeepEmpty) {
            found.emplace_back(p, length);
        }
        p += length;
        if (*p != '\0') {
            ++p;  // one delimiter ends one field; one that ends the text starts none
        }
    }
    fields.swap(found);  // last, for the text may be one of the old fields
}

void Split(std::string const& text, std::string const& delimiters, std::vector<std::string>& fields,
           SplitMode mode) {
    Split(text.c_str(), delimiters, fields, mode);
}

bool IsLessUtf8Collate(std::string const& a, std::string const& b) {
    int const order = std::memcmp(a.data(), b.data(), std::min(a.size(), b.size()));
    return order != 0 ? order < 0 : a.size() < b.size();
}

char const* Cstr(char const* text) {
    return text != nullptr ? text : "";
}

}  // namespace Quillo
