// The C library's searches and copies, a byte at a time. As they come, a hundred bytes take as many
// instructions as a few, and a text that is searched over and over would not show beside what is
// reported of it.
#include <cstddef>

extern "C" {

void* memchr(void const* text, int c, std::size_t size) {
    for (auto const* p = static_cast<unsigned char const*>(text); size != 0; ++p, --size) {
        if (*p == static_cast<unsigned char>(c)) {
            return const_cast<unsigned char*>(p);
        }
    }
    return nullptr;
}

char* strchr(char const* text, int c) {
    for (; *text != static_cast<char>(c); ++text) {
        if (*text == '\0') {
            return nullptr;
        }
    }
    return const_cast<char*>(text);
}

std::size_t strlen(char const* text) {
    char const* end = text;
    while (*end != '\0') {
        ++end;
    }
    return static_cast<std::size_t>(end - text);
}

void* memmove(void* to, void const* from, std::size_t size) {
    auto* const target = static_cast<char*>(to);
    auto const* const source = static_cast<char const*>(from);
    if (target <= source) {
        for (std::size_t i = 0; i < size; ++i) {
            target[i] = source[i];
        }
    } else {
        for (; size != 0; --size) {
            target[size - 1] = source[size - 1];
        }
    }
    return to;
}

void* memcpy(void* to, void const* from, std::size_t size) {
    return memmove(to, from, size);
}

}  // extern "C"
