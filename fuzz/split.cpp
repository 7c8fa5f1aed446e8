// `Split` against its rules, the order of texts against the laws of an order, and `Cstr`.
#include <algorithm>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"
#include "pieces.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

Texts ByTheRules(std::string const& text, std::string const& delimiters, bool keeps) {
    Texts fields = Pieces(text, delimiters);
    if (fields.back().empty()) {
        fields.pop_back();
    }
    if (!keeps) {
        fields.erase(std::remove(fields.begin(), fields.end(), ""), fields.end());
    }
    return fields;
}

void CheckSplit(std::string const& whole, std::string const& delimiters, int mode, unsigned place) {
    std::string const text = whole.c_str();
    std::string const usedDelimiters = delimiters.c_str();
    Texts const expected = ByTheRules(text, usedDelimiters, mode == KeepEmpty);
    SplitMode const splitMode = static_cast<SplitMode>(mode);

    Texts fields = {"old"};
    Split(TightText(text).c_str(), delimiters, fields, splitMode);
    ExpectEqual(fields, expected, "Split: at each delimiter, up to the NUL");

    fields = {whole, delimiters};
    Split(fields[0], place == 0 ? fields[1] : delimiters, fields, splitMode);
    ExpectEqual(fields, expected, "Split: text and delimiters may lie in the fields");

    fields = {"old"};
    Split(nullptr, delimiters, fields, splitMode);
    ExpectEqual(fields, Texts(), "Split: null has no fields");
}

// What the fields were cut from.
void CheckJoin(std::string const& text, char delimiter) {
    Texts fields;
    Split(text, std::string(1, delimiter), fields, KeepEmpty);
    std::string joined;
    for (std::string const& field : fields) {
        joined += field + delimiter;
    }
    bool const endsField = text.empty() || text.back() == delimiter;
    ExpectEqual(joined, endsField ? text : text + delimiter,
                "Split: kept fields join to the text again");
}

bool ByteOrder(char a, char b) {
    return static_cast<unsigned char>(a) < static_cast<unsigned char>(b);
}

bool IsEqual(std::string const& a, std::string const& b) {
    return !IsLessUtf8Collate(a, b) && !IsLessUtf8Collate(b, a);
}

void CheckOrder(std::string const& a, std::string const& b, std::string const& c) {
    for (std::string const* x : {&a, &b, &c}) {
        Expect(!IsLessUtf8Collate(*x, *x), "IsLessUtf8Collate: no text is less than itself", *x);
        for (std::string const* y : {&a, &b, &c}) {
            bool const isLess = IsLessUtf8Collate(*x, *y);
            ExpectEqual(
                isLess,
                std::lexicographical_compare(x->begin(), x->end(), y->begin(), y->end(), ByteOrder),
                "IsLessUtf8Collate: the order of the bytes");
            Expect(!isLess || !IsLessUtf8Collate(*y, *x), "IsLessUtf8Collate: one way only", *x);
            ExpectEqual(IsEqual(*x, *y), *x == *y, "IsLessUtf8Collate: only equals are equal");
            for (std::string const* z : {&a, &b, &c}) {
                if (isLess && IsLessUtf8Collate(*y, *z) && !IsLessUtf8Collate(*x, *z)) {
                    Fail("IsLessUtf8Collate: less than less is less", *x + "\n" + *y + "\n" + *z);
                }
            }
        }
    }
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    int const mode = feed.Bit() ? feed.Number() : static_cast<int>(feed.Below(2));
    unsigned const place = feed.Below(2);
    std::string const delimiters = feed.Text();
    std::string const text = feed.Text();
    std::string const third = feed.Rest();
    CheckSplit(text, delimiters, mode, place);
    if (!delimiters.empty() && delimiters[0] != '\0') {
        CheckJoin(text.c_str(), delimiters[0]);
    }
    CheckOrder(delimiters, text, third);
    CheckOrder(text, text + third, text + delimiters);
    ExpectEqual(static_cast<void const*>(Cstr(text.c_str())) == text.c_str(), true,
                "Cstr: a text is itself");
    ExpectEqual(std::string(Cstr(nullptr)), std::string(), "Cstr: null is the empty text");
    ExpectEqual(Reports(), Texts(), "Split: nothing is reported");
}
