// The vocabularies against a table of their texts.
#include <algorithm>
#include <iostream>
#include <sstream>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"

using namespace Quillo;

namespace {

// A vocabulary: its texts from 0 up, and what stands for any other number.
struct Vocabulary {
    std::vector<std::string> texts;
    std::string fallback;
    bool isOpen;  // every number is valid
};

// What the library has of it, besides its overloads.
template <class E>
struct Companions {
    E const* values;
    int length;
    E first;
    E last;
    int (*unitTest)();
};

template <class E>
void CheckText(std::string const& text, Vocabulary const& words) {
    auto const found = std::find(words.texts.begin(), words.texts.end(), text);
    int const untouched = 4711;
    E value = static_cast<E>(untouched);
    bool const isUnknown = FromCstr(TightText(text).c_str(), value);
    ExpectEqual(isUnknown, found == words.texts.end(), "FromCstr: true says that no text matches");
    ExpectEqual(static_cast<int>(value),
                isUnknown ? untouched : static_cast<int>(found - words.texts.begin()),
                "FromCstr: the value of the text, or untouched");
    Expect(FromCstr(nullptr, value), "FromCstr: null is no text");
}

template <class E>
void CheckNumber(int number, Vocabulary const& words) {
    bool const isThere = number >= 0 && number < static_cast<int>(words.texts.size());
    E const value = static_cast<E>(number);
    ExpectEqual(std::string(ToCstr(value)),
                isThere ? words.texts[static_cast<std::size_t>(number)] : words.fallback,
                "ToCstr: the text of the number");
    ExpectEqual(IsValid(value), isThere || words.isOpen, "IsValid: the numbers with a text");
}

template <class E>
void CheckTables(Companions<E> const& has, Vocabulary const& words) {
    ExpectEqual(has.length, static_cast<int>(words.texts.size()), "ENUMS_LEN counts the texts");
    for (int i = 0; i < has.length; ++i) {
        ExpectEqual(static_cast<int>(has.values[i]), i, "ENUMS are the numbers from 0 up");
    }
    ExpectEqual(static_cast<int>(has.first), 0, "FIRST is 0");
    ExpectEqual(static_cast<int>(has.last), has.length - 1, "LAST is the last of them");
    ExpectEqual(has.unitTest(), 0, "UnitTest: they fit together");
}

template <class E>
void CheckAll(std::string const& text, int number, Companions<E> const& has,
              Vocabulary const& words) {
    CheckText<E>(text, words);
    CheckNumber<E>(number, words);
    CheckTables(has, words);
}

// Ends that are wrong, and a base library that finds no two texts equal, are told of.
void CheckFailure(unsigned kind) {
    std::ostringstream told;
    std::streambuf* const before = std::cout.rdbuf(told.rdbuf());
    (kind == 0 ? AlignType_FIRST : AlignType_LAST) = AlignType_Center;
    Platform().compare = [](char const*, char const*) { return 1; };
    int const other = ValignType_UnitTest();
    int const status = AlignType_UnitTest();
    int const all = EnumsUnitTest();
    AlignType_FIRST = AlignType_Left;
    AlignType_LAST = AlignType_Right;
    std::cout.rdbuf(before);
    ResetLibrary();
    ExpectEqual(status + 2 * other + 4 * all, 7, "UnitTest: 1 says that it failed");
    ExpectEqual(told.str(),
                "** ValignType_UnitTest: Failed back-and-forth conversion of \"top\" (0)\n"
                "** AlignType_UnitTest: Quillo:: AlignType" +
                    std::string(kind == 0 ? "_FIRST" : "_LAST") +
                    " is wrong\n"
                    "** LoaContext_UnitTest: Failed back-and-forth conversion of \"unspecified\" "
                    "(0)\n",
                "UnitTest: what is wrong is told");
}

#define COMPANIONS(E)                                               \
    Companions<E> {                                                 \
        E##_ENUMS, E##_ENUMS_LEN, E##_FIRST, E##_LAST, E##_UnitTest \
    }

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    int const number = feed.Bit() ? feed.Number() : static_cast<int>(feed.Below(8)) - 1;
    unsigned const failure = feed.Below(2);
    std::string const text = feed.Rest().c_str();
    CheckAll(text, number, COMPANIONS(LoaContext),
             {{"unspecified", "none", "html", "js", "php", "both"}, "unknown-LoaContext", false});
    CheckAll(text, number, COMPANIONS(ValignType),
             {{"top", "middle", "bottom"}, "unknown-ValignType", false});
    CheckAll(text, number, COMPANIONS(AlignType),
             {{"left", "center", "right"}, "unknown-AlignType", false});
    CheckAll(text, number, COMPANIONS(ObjectType),
             {{"loa", "con", "sys"}, "unknown-ObjectType", false});
    CheckAll(text, number, COMPANIONS(AuthAccessMethod),
             {{"non-secure", "secure", "hidden"}, "unknown-AuthAccessMethod", false});
    CheckAll(text, number, COMPANIONS(SmartcardEnablement),
             {{"disabled", "alwaysOn", "editable"}, "unknown-SmartcardEnablement", false});
    CheckAll(text, number, COMPANIONS(IconSize),
             {{"Small", "Normal", "Large", "Huge"}, "Small", true});
    int const pixels[] = {16, 24, 32, 48};
    ExpectEqual(GetPixelSize(static_cast<IconSize>(number)),
                number >= 0 && number < 4 ? pixels[number] : 16, "GetPixelSize: 16 for no size");
    CheckFailure(failure);
    ExpectEqual(EnumsUnitTest(), 0, "EnumsUnitTest: all fit together");
    ExpectEqual(Reports(), std::vector<std::string>(), "enums: nothing is reported");
    ResetLibrary();
}
