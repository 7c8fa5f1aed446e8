// The vocabularies: the texts of each, and the companions that are made from them. The values of an
// enumeration count from 0 up, so a value's text stands at its number.
#include <quillo>

#include "enums/self_test.hpp"

namespace Quillo {
namespace {

char const* const LoaContext_TEXTS[] = {"unspecified", "none", "html", "js", "php", "both"};
char const* const ValignType_TEXTS[] = {"top", "middle", "bottom"};
char const* const AlignType_TEXTS[] = {"left", "center", "right"};
char const* const ObjectType_TEXTS[] = {"loa", "con", "sys"};
char const* const AuthAccessMethod_TEXTS[] = {"non-secure", "secure", "hidden"};
char const* const SmartcardEnablement_TEXTS[] = {"disabled", "alwaysOn", "editable"};
char const* const IconSize_TEXTS[] = {"Small", "Normal", "Large", "Huge"};

template <std::size_t length>
bool IsIndex(int number, char const* const (&)[length]) {
    return static_cast<unsigned>(number) < length;
}

template <std::size_t length>
char const* TextAt(int number, char const* const (&texts)[length], char const* fallback) {
    return IsIndex(number, texts) ? texts[number] : fallback;
}

// The number of `text`; -1 when it is none of `texts`.
int NumberOf(char const* text, char const* const* texts, int length) {
    for (int number = 0; text != nullptr && number < length; ++number) {
        if (Glb_strcmp(text, texts[number]) == 0) {
            return number;
        }
    }
    return -1;
}

template <class E, std::size_t length>
bool Parse(char const* text, char const* const (&texts)[length], E& out) {
    int const number = NumberOf(text, texts, static_cast<int>(length));
    if (number < 0) {
        return true;
    }
    out = static_cast<E>(number);
    return false;
}

}  // namespace

const LoaContext LoaContext_ENUMS[] = {LoaContext_Unspecified, LoaContext_None, LoaContext_Html,
                                       LoaContext_Js,          LoaContext_Php,  LoaContext_Both};
const ValignType ValignType_ENUMS[] = {ValignType_Top, ValignType_Middle, ValignType_Bottom};
const AlignType AlignType_ENUMS[] = {AlignType_Left, AlignType_Center, AlignType_Right};
const ObjectType ObjectType_ENUMS[] = {ObjectType_Loa, ObjectType_Con, ObjectType_Sys};
const AuthAccessMethod AuthAccessMethod_ENUMS[] = {
    AuthAccessMethod_NonSecure, AuthAccessMethod_Secure, AuthAccessMethod_Hidden};
const SmartcardEnablement SmartcardEnablement_ENUMS[] = {
    SmartcardEnablement_Disabled, SmartcardEnablement_AlwaysOn, SmartcardEnablement_Editable};
const IconSize IconSize_ENUMS[] = {IconSize_Small, IconSize_Normal, IconSize_Large, IconSize_Huge};

// What every enumeration has besides its texts, its table and its range.
#define QUILLO_COMPANIONS(E, fallback)                                                  \
    const int E##_ENUMS_LEN = static_cast<int>(sizeof E##_ENUMS / sizeof E##_ENUMS[0]); \
    E E##_FIRST = E##_ENUMS[0];                                                         \
    E E##_LAST = E##_ENUMS[sizeof E##_ENUMS / sizeof E##_ENUMS[0] - 1];                 \
    char const* ToCstr(E value) {                                                       \
        return TextAt(value, E##_TEXTS, fallback);                                      \
    }                                                                                   \
    bool FromCstr(char const* text, E& out) {                                           \
        return Parse(text, E##_TEXTS, out);                                             \
    }                                                                                   \
    int E##_UnitTest() {                                                                \
        return SelfTest(#E, E##_ENUMS, E##_ENUMS_LEN, E##_FIRST, E##_LAST);             \
    }

QUILLO_COMPANIONS(LoaContext, "unknown-LoaContext")
QUILLO_COMPANIONS(ValignType, "unknown-ValignType")
QUILLO_COMPANIONS(AlignType, "unknown-AlignType")
QUILLO_COMPANIONS(ObjectType, "unknown-ObjectType")
QUILLO_COMPANIONS(AuthAccessMethod, "unknown-AuthAccessMethod")
QUILLO_COMPANIONS(SmartcardEnablement, "unknown-SmartcardEnablement")
QUILLO_COMPANIONS(IconSize, "Small")

bool IsValid(LoaContext value) {
    return IsIndex(value, LoaContext_TEXTS);
}
bool IsValid(ValignType value) {
    return IsIndex(value, ValignType_TEXTS);
}
bool IsValid(AlignType value) {
    return IsIndex(value, AlignType_TEXTS);
}
bool IsValid(ObjectType value) {
    return IsIndex(value, ObjectType_TEXTS);
}
bool IsValid(AuthAccessMethod value) {
    return IsIndex(value, AuthAccessMethod_TEXTS);
}
bool IsValid(SmartcardEnablement value) {
    return IsIndex(value, SmartcardEnablement_TEXTS);
}

// Every number has a size (`GetPixelSize`), so every number will do.
bool IsValid(IconSize) {
    return true;
}

int GetPixelSize(IconSize size) {
    switch (size) {
        case IconSize_Normal:
            return 24;
        case IconSize_Large:
            return 32;
        case IconSize_Huge:
            return 48;
        default:
            return 16;
    }
}

int EnumsUnitTest() {
    bool const hasFailed = LoaContext_UnitTest() != 0 || ValignType_UnitTest() != 0 ||
                           AlignType_UnitTest() != 0 || ObjectType_UnitTest() != 0 ||
                           AuthAccessMethod_UnitTest() != 0 ||
                           SmartcardEnablement_UnitTest() != 0 || IconSize_UnitTest() != 0;
    return hasFailed ? 1 : 0;
}

}  // namespace Quillo
