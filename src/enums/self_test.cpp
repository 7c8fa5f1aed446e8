#include "enums/self_test.hpp"

#include <cstring>
#include <initializer_list>
#include <iostream>
#include <quillo>

#include "enums/text_list.hpp"

namespace Quillo {
namespace {

int ValueAt(void const* values, int i) {
    int value;
    std::memcpy(&value,
                static_cast<char const*>(values) + static_cast<std::size_t>(i) * sizeof value,
                sizeof value);
    return value;
}

int Fail(char const* name, std::initializer_list<char const*> reason) {
    std::cout << "** " << name << "_UnitTest: ";
    for (char const* const piece : reason) {
        std::cout << piece;
    }
    std::cout.flush();
    return 1;
}

// Numbers go out as texts, digits alone: a stream would group them by its locale.
int FailOrder(char const* name, int value) {
    return Fail(name, {"Quillo:: ", name, " ", EscapeJavascriptString(value).c_str(),
                       " is out-of-order\n"});
}

int FailEnd(char const* name, char const* end) {
    return Fail(name, {"Quillo:: ", name, end, " is wrong\n"});
}

int FailConversion(char const* name, char const* text, int value) {
    return Fail(name, {"Failed back-and-forth conversion of \"", Cstr(text), "\" (",
                       EscapeJavascriptString(value).c_str(), ")\n"});
}

}  // namespace

int SelfTest(char const* name, char const* texts, void const* values, int length, int first,
             int last) {
    int const end = length - 1;
    for (int i = 0; i < end; ++i) {
        if (ValueAt(values, i) >= ValueAt(values, i + 1)) {
            return FailOrder(name, ValueAt(values, i));
        }
    }
    if (first != ValueAt(values, 0)) {
        return FailEnd(name, "_FIRST");
    }
    if (last != ValueAt(values, end)) {
        return FailEnd(name, "_LAST");
    }
    for (int i = 0; i <= end; ++i) {
        int const value = ValueAt(values, i);
        char const* const text = TextAt(value, texts);
        if (NumberOf(text, texts) != value) {
            return FailConversion(name, text, value);
        }
    }
    return 0;
}

}  // namespace Quillo
