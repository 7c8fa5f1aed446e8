#include "device/heapless_platform.hpp"

#include <attribute_service.h>
#include <config_store.h>
#include <device_log.h>
#include <glb.h>
#include <translation_service.h>

#include <cstdarg>
#include <cstring>

int logSpecError = 1;
int logSpecWarn = 2;
int logSpecInfo = 3;
int logSpecForceInfo = 4;

namespace {

int WriteAnswer(ZOV_AppData* app) {
    std::fputs(Heapless().answer, app->out);
    return 0;
}

}  // namespace

HeaplessPlatform& Heapless() {
    static HeaplessPlatform platform;
    return platform;
}

void Log_SpecEntry(int, char const*, int, char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(Heapless().lastMessage, sizeof Heapless().lastMessage, format, arguments);
    va_end(arguments);
    ++Heapless().logEntries;
}

void Glb::ThrowError(std::string const& message, int line, char const* file) {
    throw Glb::Error(line, file, message);
}

int Glb_strcmp(char const* left, char const* right) {
    return std::strcmp(left, right);
}

int loareq_initialize(ZOV_AppData*) {
    return Heapless().initializeResult;
}

void loareq_free(ZOV_AppData*) {
    ++Heapless().frees;
}

void loareq_set_object(ZOV_AppData*, char const*) {}
void loareq_set_attrs(ZOV_AppData*, char const*) {}
void loareq_set_format(ZOV_AppData*, char const*) {}
void loareq_set_default_val(ZOV_AppData*, char const*) {}
void loareq_set_fnName(ZOV_AppData*, char const*) {}
void loareq_set_fnArg(ZOV_AppData*, char const*) {}
void loareq_set_context(ZOV_AppData*, char const*) {}

int format_true_loa_request(ZOV_AppData* app) {
    return WriteAnswer(app);
}
int format_con_request(ZOV_AppData* app) {
    return WriteAnswer(app);
}
int format_sys_request(ZOV_AppData* app) {
    return WriteAnswer(app);
}

int Cfg_GetBoolAttrValue(char const*, int* value) {
    if (Heapless().writesFlag) {
        *value = Heapless().flag;
    }
    return Heapless().configResult;
}

int Cfg_SetAttrValue(char const*, char const*) {
    return Heapless().configResult;
}

long ConfigUpdate(char const*) {
    ++Heapless().updates;
    return Heapless().configResult;
}

char* HTTP_Extension_Translation_Lang(char const*) {
    return nullptr;
}

int Trans_LangExists(char const*) {
    return 0;
}

void HTTP_Translate_Phrase(ZOV_AppData* app, char*) {
    WriteAnswer(app);
}
