#include "contract_subject.hpp"
#include "support/recording_platform.hpp"

ContractSubject MakeContractSubject() {
    Platform().objects["host"] = {{"hostname", "architecture"}, {{"gate", "ppc"}}};
    return {"host", "hostname", "gate", "architecture", "ppc"};
}
