// The request record: what the web server knows of the request it is serving.
//
// The record belongs to the web server from the first byte of a request to the last one of its
// answer. Quillo borrows it: it reads `preferredLang` and `uriArgs`, and puts a stream of its own
// in the place of `out` for the time of one attribute-service request.
#ifndef QUILLO_PLATFORM_ZOV_APPDATA_H
#define QUILLO_PLATFORM_ZOV_APPDATA_H

#include <stdint.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZOV_AppData {
    // The language the client asked for, NUL-terminated: an Accept-Language text (RFC 9110) or a
    // single tag such as "de-de". Empty when the client named none.
    char preferredLang[64];

    // The request's arguments in the form name=value&name=value, NUL-terminated and still
    // percent-encoded; null when the request has none. Owned by the web server.
    char const* uriArgs;

    // Where the request's output goes. Owned by the web server.
    FILE* out;

    // The attribute service's own state of the request in hand, as wide as eight pointers. Quillo
    // clears it before `loareq_initialize`; from then until `loareq_free` it is the service's. The
    // seventh word, `loaState[6]`, is the text pointer that is handed to a get-function.
    uintptr_t loaState[8];
} ZOV_AppData;

#ifdef __cplusplus
}
#endif

#endif
