#include "platform/contract_subject.hpp"

namespace ContractSubject {

char const* const object = "processes";
char const* const firstAttribute = "pid";
char const* const secondAttribute = "threads";

// The stand-alone platform shows the running machine and remembers nothing.
void Prepare() {}

int Format(ZOV_AppData* app) {
    return format_sys_request(app);
}

}  // namespace ContractSubject
