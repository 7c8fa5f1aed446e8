#include "support/recording_platform.hpp"

#include <cstdarg>
#include <cstring>
#include <utility>

// Codes that no array index and no boolean could stand for by accident.
int logSpecError = 701;
int logSpecWarn = 702;
int logSpecInfo = 703;
int logSpecForceInfo = 704;

namespace {

// What the setting calls stored for the request in hand.
struct Request {
    std::string object;
    std::vector<std::string> attrs;
    std::string format;
    std::string defaultValue;
    std::string argument;
};

Request current;

std::string LevelName(int level) {
    if (level == logSpecError) {
        return "error";
    }
    if (level == logSpecWarn) {
        return "warn";
    }
    return level == logSpecInfo ? "info" : "force";
}

__attribute__((format(printf, 1, 0))) std::string Formatted(char const* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

void Record(std::string line) {
    Platform().trace.push_back(std::move(line));
}

std::vector<std::string> Words(std::string const& line) {
    std::vector<std::string> words;
    std::size_t start = 0;
    for (;;) {
        std::size_t const blank = line.find(' ', start);
        words.push_back(line.substr(start, blank - start));
        if (blank == std::string::npos) {
            return words;
        }
        start = blank + 1;
    }
}

std::string ValueOf(RecordedObject const& object, std::vector<std::string> const& record,
                    std::size_t position) {
    if (position < 1 || position > current.attrs.size()) {
        return current.defaultValue;
    }
    for (std::size_t i = 0; i < object.attributes.size(); ++i) {
        if (object.attributes[i] == current.attrs[position - 1]) {
            std::string value = record[i];
            for (char& c : value) {
                c = static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
            }
            return value;
        }
    }
    return current.defaultValue;
}

std::string AnswerLine(RecordedObject const& object, std::vector<std::string> const& record) {
    std::string line;
    std::string const& format = current.format;
    for (std::size_t i = 0; i < format.size();) {
        std::size_t const digits = format.find_first_not_of("0123456789", i + 1);
        std::size_t const end = digits == std::string::npos ? format.size() : digits;
        if (format[i] != '%' || end == i + 1) {
            line += format[i++];
            continue;
        }
        line += ValueOf(object, record, std::stoul(format.substr(i + 1, end - i - 1)));
        i = end;
    }
    return line;
}

std::string Answer() {
    if (Platform().answer) {
        return *Platform().answer;
    }
    auto const object = Platform().objects.find(current.object);
    if (object == Platform().objects.end()) {
        return current.defaultValue;
    }
    std::string answer;
    for (auto const& record : object->second.records) {
        answer += AnswerLine(object->second, record);
    }
    return answer;
}

int Format(ZOV_AppData* app, char const* name) {
    Record(name);
    if (Platform().onFormat) {
        Platform().onFormat(app);
    }
    std::string const answer = Answer();
    std::fwrite(answer.data(), 1, answer.size(), app->out);
    return Platform().formatResult;
}

}  // namespace

std::string RecordingPlatform::Trace() const {
    std::string text;
    for (std::string const& line : trace) {
        text += line + "\n";
    }
    return text;
}

std::vector<std::string> RecordingPlatform::Messages() const {
    std::vector<std::string> messages;
    for (LogEntry const& entry : log) {
        messages.push_back(entry.level + ": " + entry.message);
    }
    return messages;
}

RecordingPlatform& Platform() {
    static RecordingPlatform platform;
    return platform;
}

void Log_SpecEntry(int level, char const* file, int line, char const* format, ...) {
    if (Platform().onLogEntry) {
        Platform().onLogEntry();
    }
    va_list arguments;
    va_start(arguments, format);
    LogEntry entry = {LevelName(level), file, line, format, Formatted(format, arguments), level};
    va_end(arguments);
    Record("log " + entry.level + " " + entry.file + ": " + entry.message);
    Platform().log.push_back(std::move(entry));
    if (Platform().afterLogEntry) {
        Platform().afterLogEntry();
    }
}

void Glb::ThrowError(std::string const& message, int line, char const* file) {
    Record("ThrowError " + message);
    if (!Platform().throwErrorReturns) {
        throw Glb::Error(line, file, message);
    }
}

int Glb_strcmp(char const* left, char const* right) {
    return Platform().compare ? Platform().compare(left, right) : std::strcmp(left, right);
}

int loareq_initialize(ZOV_AppData* app) {
    Record("loareq_initialize");
    current = Request();
    if (Platform().onInitialize) {
        Platform().onInitialize(app);
    }
    return Platform().initializeResult;
}

void loareq_free(ZOV_AppData*) {
    Record("loareq_free");
    current = Request();
}

void loareq_set_object(ZOV_AppData*, char const* object) {
    Record(std::string("loareq_set_object ") + object);
    current.object = object;
}

void loareq_set_attrs(ZOV_AppData*, char const* attrs) {
    Record(std::string("loareq_set_attrs ") + attrs);
    current.attrs = Words(attrs);
}

void loareq_set_format(ZOV_AppData*, char const* format) {
    Record(std::string("loareq_set_format ") + format);
    current.format = format;
}

void loareq_set_default_val(ZOV_AppData*, char const* value) {
    Record(std::string("loareq_set_default_val ") + value);
    current.defaultValue = value;
}

void loareq_set_fnName(ZOV_AppData*, char const* fnName) {
    Record(std::string("loareq_set_fnName ") + fnName);
}

void loareq_set_fnArg(ZOV_AppData* app, char const* fnArg) {
    Record(std::string("loareq_set_fnArg ") + fnArg);
    current.argument = fnArg;
    app->loaState[6] = reinterpret_cast<std::uintptr_t>(current.argument.data());
}

void loareq_set_context(ZOV_AppData*, char const* context) {
    Record(std::string("loareq_set_context ") + context);
}

int format_true_loa_request(ZOV_AppData* app) {
    return Format(app, "format_true_loa_request");
}
int format_con_request(ZOV_AppData* app) {
    return Format(app, "format_con_request");
}
int format_sys_request(ZOV_AppData* app) {
    return Format(app, "format_sys_request");
}

int Cfg_GetBoolAttrValue(char const* name, int* value) {
    Record(std::string("Cfg_GetBoolAttrValue ") + name);
    auto const setting = Platform().settings.find(name);
    if (setting == Platform().settings.end()) {
        return -1;
    }
    *value = setting->second;
    return 0;
}

int Cfg_SetAttrValue(char const* name, char const* value) {
    Record(std::string("Cfg_SetAttrValue ") + name + " " + value);
    return Platform().setResult;
}

long ConfigUpdate(char const* assignment) {
    Record(std::string("ConfigUpdate ") + assignment);
    return Platform().updateResult;
}

char* HTTP_Extension_Translation_Lang(char const* preferred) {
    Record(std::string("HTTP_Extension_Translation_Lang ") + preferred);
    return Platform().languageAnswer ? Platform().languageAnswer->data() : nullptr;
}

int Trans_LangExists(char const* code) {
    Record(std::string("Trans_LangExists ") + code);
    return Platform().knownLanguages.count(code) != 0 ? 1 : 0;
}

void HTTP_Translate_Phrase(ZOV_AppData* app, char* arg) {
    Record(std::string("HTTP_Translate_Phrase ") + (arg != nullptr ? arg : "(null)"));
    std::string const text = Platform().onTranslate && arg != nullptr ? Platform().onTranslate(arg)
                                                                      : Platform().translation;
    std::fwrite(text.data(), 1, text.size(), app->out);
}
