// Boolean settings: the store's own form of them is "TRUE" and "FALSE".
#include <config_store.h>

#include <quillo>

#include "elements/diagnostics.hpp"

namespace Quillo {
namespace {

char const* TextOf(bool value) {
    return value ? "TRUE" : "FALSE";
}

// A failed write is reported in the words of a failed read; log filters know them.
int Fail(char const* name) {
    ReportDiagnostic(logSpecError, "Failed to get config value: %s", name);
    return 1;
}

}  // namespace

int GetConfig(char const* name, bool& value) {
    int number = 0;
    if (Cfg_GetBoolAttrValue(name, &number) != 0) {
        return Fail(name);
    }
    value = number != 0;
    return 0;
}

int PutConfig(char const* name, bool const& value) {
    if (Cfg_SetAttrValue(name, TextOf(value)) != 0) {
        return Fail(name);
    }
    return 0;
}

int PutPersistentConfig(std::string const& name, bool const& value) {
    std::string const assignment = Joined({name, "=", TextOf(value)});
    long const status = ConfigUpdate(assignment.c_str());
    if (status != 0) {
        ReportDiagnostic(logSpecError, "ConfigUpdate(%s) failed status=%ld", assignment.c_str(),
                         status);
        return 1;
    }
    return 0;
}

}  // namespace Quillo
