// The vocabularies: the texts of each, and the companions that are made from them. The values of an
// enumeration count from 0 up, so a value's text stands at its number.
#include <quillo>

#include "enums/self_test.hpp"
#include "enums/text_list.hpp"

namespace Quillo {
namespace {

char const LoaContext_TEXTS[] = "unspecified\0none\0html\0js\0php\0both\0";
char const ValignType_TEXTS[] = "top\0middle\0bottom\0";
char const AlignType_TEXTS[] = "left\0center\0right\0";
char const ObjectType_TEXTS[] = "loa\0con\0sys\0";
char const AuthAccessMethod_TEXTS[] = "non-secure\0secure\0hidden\0";
char const SmartcardEnablement_TEXTS[] = "disabled\0alwaysOn\0editable\0";
char const IconSize_TEXTS[] = "Small\0Normal\0Large\0Huge\0";

char const* TextOr(char const* fallback, int number, char const* texts) {
    char const* const text = TextAt(number, texts);
    return text != nullptr ? text : fallback;
}

// Sets `out` to the value of `text`. True: it has none.
template <class E>
bool Parse(char const* text, char const* texts, E& out) {
    int const number = NumberOf(text, texts);
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
        return TextOr(fallback, value, E##_TEXTS);                                      \
    }                                                                                   \
    bool FromCstr(char const* text, E& out) {                                           \
        return Parse(text, E##_TEXTS, out);                                             \
    }                                                                                   \
    int E##_UnitTest() {                                                                \
        return SelfTest(#E, E##_TEXTS, E##_ENUMS, E##_ENUMS_LEN, E##_FIRST, E##_LAST);  \
    }

QUILLO_COMPANIONS(LoaContext, "unknown-LoaContext")
QUILLO_COMPANIONS(ValignType, "unknown-ValignType")
QUILLO_COMPANIONS(AlignType, "unknown-AlignType")
QUILLO_COMPANIONS(ObjectType, "unknown-ObjectType")
QUILLO_COMPANIONS(AuthAccessMethod, "unknown-AuthAccessMethod")
QUILLO_COMPANIONS(SmartcardEnablement, "unknown-SmartcardEnablement")
QUILLO_COMPANIONS(IconSize, "Small")

bool IsValid(LoaContext value) {
    return TextAt(value, LoaContext_TEXTS) != nullptr;
}
bool IsValid(ValignType value) {
    return TextAt(value, ValignType_TEXTS) != nullptr;
}
bool IsValid(AlignType value) {
    return TextAt(value, AlignType_TEXTS) != nullptr;
}
bool IsValid(ObjectType value) {
    return TextAt(value, ObjectType_TEXTS) != nullptr;
}
bool IsValid(AuthAccessMethod value) {
    return TextAt(value, AuthAccessMethod_TEXTS) != nullptr;
}
bool IsValid(SmartcardEnablement value) {
    return TextAt(value, SmartcardEnablement_TEXTS) != nullptr;
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
