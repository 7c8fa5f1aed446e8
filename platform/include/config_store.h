// The configuration store: the device's named settings, each with a running and a stored value.
#ifndef QUILLO_PLATFORM_CONFIG_STORE_H
#define QUILLO_PLATFORM_CONFIG_STORE_H

#ifdef __cplusplus
extern "C" {
#endif

// Reads the running value of the boolean attribute `name` into `*value`, zero or non-zero.
// Returns 0; on failure another number, and `*value` is untouched.
int Cfg_GetBoolAttrValue(char const* name, int* value);

// Sets the running value of `name` to the text `value` ("TRUE" or "FALSE" for a boolean one); the
// stored value, which holds after a restart, stays. Returns 0, or another number on failure.
int Cfg_SetAttrValue(char const* name, char const* value);

// Carries out one assignment, NAME=VALUE without blanks, on the stored and on the running value.
// Returns 0, or the number of what went wrong.
long ConfigUpdate(char const* assignment);

#ifdef __cplusplus
}
#endif

#endif
