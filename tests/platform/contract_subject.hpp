// What the contract test has to know of the platform that it is linked with. Each platform under
// test has a file that defines these.
#ifndef QUILLO_TESTS_CONTRACT_SUBJECT_HPP
#define QUILLO_TESTS_CONTRACT_SUBJECT_HPP

#include <attribute_service.h>

namespace ContractSubject {

// Brings the platform to where a test may begin. Called before each test.
void Prepare();

// The formatter of the object below.
int Format(ZOV_AppData* app);

// An object that the platform knows, with one record or more; and two of its attributes, of which
// no record has an empty value.
extern char const* const object;
extern char const* const firstAttribute;
extern char const* const secondAttribute;

}  // namespace ContractSubject

#endif
