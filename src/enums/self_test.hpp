// The self-test of a vocabulary: do its table, its ends and its texts fit together?
//
//     ** IconSize_UnitTest: Quillo:: IconSize 2 is out-of-order
//     ** ValignType_UnitTest: Quillo:: ValignType_FIRST is wrong
//     ** AlignType_UnitTest: Failed back-and-forth conversion of "center" (1)
#ifndef QUILLO_ENUMS_SELF_TEST_HPP
#define QUILLO_ENUMS_SELF_TEST_HPP

namespace Quillo {

// Checks of the vocabulary `name` the order of its `length` values, that `first` and `last` are the
// ends of them, and that every value's text gives the value again. `values` are those of an
// enumeration whose underlying type is int, `texts` a list as enums/text_list.hpp has it. Returns
// 0; or 1 behind the message of the first failed check, on standard output.
int SelfTest(char const* name, char const* texts, void const* values, int length, int first,
             int last);

}  // namespace Quillo

#endif
