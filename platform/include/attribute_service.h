// The attribute service (LOA): objects of the device, each with named attributes, answered as text.
//
// One request runs so: `loareq_initialize`; then the setting calls that the request needs; then one
// of the formatters, or a get-function; then `loareq_free`. The answer is written to `app->out`.
// A request that is given up ends without `loareq_free`.
#ifndef QUILLO_PLATFORM_ATTRIBUTE_SERVICE_H
#define QUILLO_PLATFORM_ATTRIBUTE_SERVICE_H

#include "zov_appdata.h"

#ifdef __cplusplus
extern "C" {
#endif

// Prepares `app->loaState`, which comes in all zero, for one request. Returns 0, or another number
// on failure.
int loareq_initialize(ZOV_AppData* app);

// Ends the request and releases what `app->loaState` holds.
void loareq_free(ZOV_AppData* app);

// Each stores one text of the request. The object's name and the default value outlive the request;
// every other text lives until the call returns, so the service copies what it keeps.
//
//   object       the object's name
//   attrs        the names of the attributes, one blank between two of them
//   format       one answer line: "%" and a position from 1 up stands for that attribute's value,
//                every other byte for itself
//   default_val  what is answered for an object or an attribute that cannot be had
//   fnName       the name of the get-function that is about to be called
//   fnArg        its argument
//   context      how it writes its text: "none", "html", "js", "php" or "both"
void loareq_set_object(ZOV_AppData* app, char const* object);
void loareq_set_attrs(ZOV_AppData* app, char const* attrs);
void loareq_set_format(ZOV_AppData* app, char const* format);
void loareq_set_default_val(ZOV_AppData* app, char const* value);
void loareq_set_fnName(ZOV_AppData* app, char const* fnName);
void loareq_set_fnArg(ZOV_AppData* app, char const* fnArg);
void loareq_set_context(ZOV_AppData* app, char const* context);

// The formatters, one for each kind of object: each writes one line for every record of the object
// to `app->out`, or the default value alone when the object cannot be had. Returns 0, or another
// number when the answer could not be written.
int format_true_loa_request(ZOV_AppData* app);
int format_con_request(ZOV_AppData* app);
int format_sys_request(ZOV_AppData* app);

#ifdef __cplusplus
}
#endif

#endif
