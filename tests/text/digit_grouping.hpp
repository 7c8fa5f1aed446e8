// A global C++ locale that groups digits, for the time of a scope: 1234567 is "1.234.567" there.
#ifndef QUILLO_TESTS_TEXT_DIGIT_GROUPING_HPP
#define QUILLO_TESTS_TEXT_DIGIT_GROUPING_HPP

#include <locale>
#include <string>

class DigitGrouping {
public:
    DigitGrouping() : before(std::locale::global(std::locale(std::locale(), new Grouped))) {}
    DigitGrouping(DigitGrouping const&) = delete;
    DigitGrouping& operator=(DigitGrouping const&) = delete;
    ~DigitGrouping() { std::locale::global(before); }

private:
    class Grouped : public std::numpunct<char> {
        std::string do_grouping() const override { return "\3"; }
        char do_thousands_sep() const override { return '.'; }
    };

    std::locale before;
};

#endif
