#include "enums/text_list.hpp"

#include <cstring>
#include <quillo>

namespace Quillo {
namespace {

char const* Next(char const* text) {
    return text + std::strlen(text) + 1;
}

}  // namespace

char const* TextAt(int number, char const* texts) {
    for (int i = 0; *texts != '\0'; texts = Next(texts), ++i) {
        if (i == number) {
            return texts;
        }
    }
    return nullptr;
}

int NumberOf(char const* text, char const* texts) {
    if (text == nullptr) {
        return -1;
    }
    for (int number = 0; *texts != '\0'; texts = Next(texts), ++number) {
        if (Glb_strcmp(text, texts) == 0) {
            return number;
        }
    }
    return -1;
}

}  // namespace Quillo
