#include <sys/utsname.h>

#include "contract_subject.hpp"

ContractSubject MakeContractSubject() {
    struct utsname names {};
    uname(&names);
    return {"host", "hostname", names.nodename, "architecture", names.machine};
}
