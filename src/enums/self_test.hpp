// The self-test of a vocabulary: do its table, its ends and its texts fit together?
//
//     ** IconSize_UnitTest: Quillo:: IconSize 2 is out-of-order
//     ** ValignType_UnitTest: Quillo:: ValignType_FIRST is wrong
//     ** AlignType_UnitTest: Failed back-and-forth conversion of "center" (1)
#ifndef QUILLO_ENUMS_SELF_TEST_HPP
#define QUILLO_ENUMS_SELF_TEST_HPP

#include <quillo>
#include <string>

namespace Quillo {

// Each writes one message to standard output and returns 1, the result of a failed test.
int FailOrder(std::string const& name, int value);
int FailEnd(std::string const& name, char const* end);
int FailConversion(std::string const& name, char const* text, int value);

// Checks the order of the `length` values, that `first` and `last` are the ends of them, and that
// every value's text gives the value again. 0, or 1 behind the message of the first failed check.
template <class E>
int SelfTest(char const* name, E const* values, int length, E first, E last) {
    for (int i = 1; i < length; ++i) {
        if (!(static_cast<int>(values[i - 1]) < static_cast<int>(values[i]))) {
            return FailOrder(name, values[i - 1]);
        }
    }
    if (first != values[0]) {
        return FailEnd(name, "_FIRST");
    }
    if (last != values[length - 1]) {
        return FailEnd(name, "_LAST");
    }
    for (int i = 0; i < length; ++i) {
        E value;
        if (FromCstr(ToCstr(values[i]), value) || value != values[i]) {
            return FailConversion(name, ToCstr(values[i]), values[i]);
        }
    }
    return 0;
}

}  // namespace Quillo

#endif
