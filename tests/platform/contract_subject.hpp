// What the contract test has to know of the platform that it is linked with. Each platform under
// test has a file that defines this.
#ifndef QUILLO_TESTS_CONTRACT_SUBJECT_HPP
#define QUILLO_TESTS_CONTRACT_SUBJECT_HPP

#include <string>

// An object of kind "sys" with one record, and two of its attributes with their values.
struct ContractSubject {
    std::string object;
    std::string attribute;
    std::string value;
    std::string otherAttribute;
    std::string otherValue;
};

// Brings the platform to where a test may begin. Called before each test.
ContractSubject MakeContractSubject();

#endif
