// A platform that records what the library asks of it, and answers what a test tells it to.
//
// Everything the library does to the platform becomes one line of a readable trace:
//
//     log error src/elements/rendering.cpp: Render:  each form must have a name
//     loareq_initialize
//     loareq_set_object host
//     format_sys_request
//     loareq_free
//
// It is a working attribute service as well: without a scripted answer the formatters answer from
// `objects` by the request's attribute line, format line and default value.
#ifndef QUILLO_TESTS_RECORDING_PLATFORM_HPP
#define QUILLO_TESTS_RECORDING_PLATFORM_HPP

#include <attribute_service.h>
#include <config_store.h>
#include <device_log.h>
#include <glb.h>
#include <translation_service.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct LogEntry {
    std::string level;  // error, warn, info or force
    std::string file;
    int line;
    std::string format;
    std::string message;
    int code;  // the level as it was passed
};

// The records of an object of the attribute service, one value for each of its attributes.
struct RecordedObject {
    std::vector<std::string> attributes;
    std::vector<std::vector<std::string>> records;
};

struct RecordingPlatform {
    std::vector<std::string> trace;
    std::vector<LogEntry> log;
    std::function<void()> onLogEntry;  // run when an entry is made, before it is recorded
    std::function<void()> afterLogEntry;

    // Attribute service.
    std::map<std::string, RecordedObject> objects;
    std::optional<std::string> answer;  // what a formatter writes, whatever was asked
    int initializeResult = 0;
    int formatResult = 0;
    std::function<void(ZOV_AppData*)> onFormat;  // run by a formatter before it answers
    std::function<void(ZOV_AppData*)> onInitialize;

    // Translation service. `languageAnswer` is written to by the library.
    std::optional<std::string> languageAnswer;
    std::map<std::string, bool> knownLanguages;
    std::string translation;  // what is written for every phrase, unless `onTranslate` is there
    std::function<std::string(std::string const&)> onTranslate;

    // Configuration store: the value of each setting; others fail.
    std::map<std::string, int> settings;
    int setResult = 0;
    long updateResult = 0;

    // Base library.
    bool throwErrorReturns = false;
    std::function<int(char const*, char const*)> compare;  // in the place of a true comparison

    std::string Trace() const;                  // the lines, each ended by a newline
    std::vector<std::string> Messages() const;  // "LEVEL: MESSAGE" of every log entry
};

// The platform of this process. A fixture makes it anew for each test.
RecordingPlatform& Platform();

#endif
