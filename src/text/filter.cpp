// Text as HTML text: a byte becomes itself, an entity, or '_' behind a warning.
#include <cstring>
#include <quillo>

#include "elements/diagnostics.hpp"
#include "text/conversion.hpp"

namespace Quillo {
namespace {

struct Entity {
    char byte;
    char size;
    char text[mostOfAByte + 1];
};

// Stands at the place that its byte names; the first one stands for bytes that have none.
Entity const entities[8] = {{'\0', 1, "_"},   {'"', 6, "&quot;"}, {}, {'&', 5, "&amp;"}, {}, {},
                            {'<', 4, "&lt;"}, {'>', 4, "&gt;"}};

Entity const& EntityOf(char byte) {
    Entity const& entity = entities[byte >> 1 & 7];
    if (entity.byte == byte) {
        return entity;
    }
    ReportDiagnostic(logSpecWarn, "Don't know tag for '%c'", static_cast<unsigned char>(byte));
    return entities[0];
}

}  // namespace

std::string_view Replacement(char byte) {
    Entity const& entity = EntityOf(byte);
    return {entity.text, static_cast<std::size_t>(entity.size)};
}

#if QUILLO_SMALL

std::string Filter(char const* text) {
    char const* p = Cstr(text);
    char const* const end = p + std::strlen(p);
    Marks<NotPlain> marks(p, end);
    std::string filtered;
    for (;; ++p) {
        char const* const plain = p;
        p = marks.From(plain);
        filtered.append(plain, static_cast<std::size_t>(p - plain));
        if (p == end) {
            return filtered;
        }
        filtered += Replacement(*p);
    }
}

#else

namespace {

char* FilterBytes(char const* p, char const* end, char* to) {
    Marks<NotPlain> marks(p, end);
    for (;;) {
        char const* const plain = p;
        p = marks.From(plain);
        to = CopyRun(plain, p, end, to);
        if (p == end) {
            return to;
        }
        Entity const& entity = EntityOf(*p++);
        std::memcpy(to, entity.text, mostOfAByte);
        to += entity.size;
    }
}

}  // namespace

std::string Filter(char const* text) {
    return Converted(Cstr(text), FilterBytes);
}

#endif

std::string Filter(std::string const& text) {
    return Filter(text.c_str());
}

}  // namespace Quillo
