#include "enums/self_test.hpp"

#include <iostream>

namespace Quillo {
namespace {

std::string Prefix(std::string const& name) {
    return "** " + name + "_UnitTest: ";
}

}  // namespace

int FailOrder(std::string const& name, int value) {
    std::cout << Prefix(name) + "Quillo:: " + name + " " + std::to_string(value) +
                     " is out-of-order\n";
    return 1;
}

int FailEnd(std::string const& name, char const* end) {
    std::cout << Prefix(name) + "Quillo:: " + name + end + " is wrong\n";
    return 1;
}

int FailConversion(std::string const& name, char const* text, int value) {
    std::cout << Prefix(name) + "Failed back-and-forth conversion of \"" + text + "\" (" +
                     std::to_string(value) + ")"
              << std::endl;
    return 1;
}

}  // namespace Quillo
