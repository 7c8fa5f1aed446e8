// Texts that nobody of this project wrote, from the folder of test data beside the checkout.
#ifndef QUILLO_TESTS_SUPPORT_EXTERNAL_TEXTS_HPP
#define QUILLO_TESTS_SUPPORT_EXTERNAL_TEXTS_HPP

#include <string>
#include <vector>

// The lines of every file in `folder` of the test data whose name ends with `ending`, and the
// strings of every file that is JSON. Empty when the folder is absent.
std::vector<std::string> ExternalTexts(std::string const& folder, std::string const& ending);

// Every string of a JSON document, names of fields included: "a\u00e9" is the three bytes 61 C3 A9.
std::vector<std::string> JsonStrings(std::string const& json);

#endif
