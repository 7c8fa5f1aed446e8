// The device log.
#ifndef QUILLO_PLATFORM_DEVICE_LOG_H
#define QUILLO_PLATFORM_DEVICE_LOG_H

#ifdef __cplusplus
extern "C" {
#endif

// The level codes that `Log_SpecEntry` takes. Their values are the platform's, and are read each
// time an entry is made. `logSpecForceInfo` marks an entry that no threshold may hold back.
extern int logSpecError;
extern int logSpecWarn;
extern int logSpecInfo;
extern int logSpecForceInfo;

// Files one entry: the message that `format` and the arguments after it make, as printf does (C11
// 7.21.6.1), whatever its length, with the source `file` and `line` it was made at. Copies what it
// keeps. A failure of the log is the log's own affair.
void Log_SpecEntry(int level, char const* file, int line, char const* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
