// The translation service.
#ifndef QUILLO_PLATFORM_TRANSLATION_SERVICE_H
#define QUILLO_PLATFORM_TRANSLATION_SERVICE_H

#include "zov_appdata.h"

#ifdef __cplusplus
extern "C" {
#endif

// The service's own name, such as "en-us", of the language that suits the client's `preferred`
// best, or null when it has none. The text stays valid until the same thread's next call, and the
// caller may write to it.
char* HTTP_Extension_Translation_Lang(char const* preferred);

// Non-zero when the two-letter language code (ISO 639-1) `code` is known to the service.
int Trans_LangExists(char const* code);

// A get-function: writes the translation of a phrase to `app->out`, in the language of the request
// and in the context that the request's state names. `arg` is the text pointer of that state.
void HTTP_Translate_Phrase(ZOV_AppData* app, char* arg);

#ifdef __cplusplus
}
#endif

#endif
