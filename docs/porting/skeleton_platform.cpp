// A platform to begin with: all that the library calls, over next to nothing. A port takes one
// service after the other and puts the device's own in its place.
//
// It knows the object "host" with two attributes, the languages en-us and de-de, one phrase of
// German, and no setting. docs/porting.md says what each call has to do.
#include <attribute_service.h>
#include <config_store.h>
#include <device_log.h>
#include <fcntl.h>
#include <glb.h>
#include <sys/utsname.h>
#include <translation_service.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <vector>

// --- device_log.h --------------------------------------------------------------------------------

// Variables of their own, even where two levels have the same code: the library tells them apart by
// their addresses.
int logSpecError = 3;
int logSpecWarn = 4;
int logSpecInfo = 6;
int logSpecForceInfo = 6;

void Log_SpecEntry(int level, char const* file, int line, char const* format, ...) {
    std::fprintf(stderr, "<%d>%s:%d: ", level, file, line);
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
}

// --- glb.h ---------------------------------------------------------------------------------------

void Glb::ThrowError(std::string const& message, int line, char const* file) {
    throw Error(line, file, message);
}

int Glb_strcmp(char const* left, char const* right) {
    return std::strcmp(left, right);
}

// --- config_store.h ------------------------------------------------------------------------------

int Cfg_GetBoolAttrValue(char const*, int*) {
    return ENOENT;
}

int Cfg_SetAttrValue(char const*, char const*) {
    return ENOENT;
}

long ConfigUpdate(char const*) {
    return ENOENT;
}

// --- attribute_service.h -------------------------------------------------------------------------

namespace {

typedef std::map<std::string, std::string> Record;

// The one request in hand: pages are made one at a time. It is emptied when the next one begins,
// since a request that is given up ends without `loareq_free`.
struct Request {
    std::string object;
    std::vector<std::string> attrs;
    std::string format;
    std::string defaultValue;
    std::string fnArg;
    std::string context;
};

Request current;

// The seventh word is what a get-function is handed.
constexpr int textWord = 6;

std::vector<std::string> Words(std::string const& line) {
    std::vector<std::string> words(1);
    for (char const c : line) {
        if (c == ' ') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    return words;
}

std::vector<Record> SysRecords(std::string const& object) {
    if (object != "host") {
        return {};
    }
    struct utsname names {};
    uname(&names);
    return {{{"hostname", names.nodename}, {"architecture", names.machine}}};
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The value at `digits`, which counts from 1.
std::string ValueAt(std::string const& digits, Record const& record) {
    std::size_t const position = digits.size() > 6 ? 0 : std::stoul(digits);
    if (position < 1 || position > current.attrs.size()) {
        return current.defaultValue;
    }
    auto const found = record.find(current.attrs[position - 1]);
    return found != record.end() ? found->second : current.defaultValue;
}

// One line of the answer. A control byte in a value would break the line's form.
std::string AnswerLine(Record const& record) {
    std::string line;
    std::string const& format = current.format;
    for (auto p = format.begin(); p != format.end();) {
        auto const end = std::find_if_not(p + 1, format.end(), IsDigit);
        if (*p != '%' || end == p + 1) {
            line += *p++;
            continue;
        }
        for (char const c : ValueAt(std::string(p + 1, end), record)) {
            line += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
        }
        p = end;
    }
    return line;
}

// The library reads its pipe only when the formatter has returned: what does not fit would wait for
// ever, so it is not begun. One write to an empty pipe takes up to the pipe's whole capacity.
bool WriteAnswer(std::FILE* out, std::string const& answer) {
    int const capacity = fcntl(fileno(out), F_GETPIPE_SZ);
    if (capacity >= 0 && answer.size() > static_cast<std::size_t>(capacity)) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__,
                      "object \"%s\": the answer takes %zu bytes, and the pipe has room for %d",
                      current.object.c_str(), answer.size(), capacity);
        return false;
    }
    return write(fileno(out), answer.data(), answer.size()) == static_cast<ssize_t>(answer.size());
}

int Answer(ZOV_AppData& app, std::vector<Record> const& records) {
    std::string answer;
    for (Record const& record : records) {
        answer += AnswerLine(record);
    }
    return WriteAnswer(app.out, records.empty() ? current.defaultValue : answer) ? 0 : EIO;
}

}  // namespace

int loareq_initialize(ZOV_AppData*) {
    current = Request();
    return 0;
}

void loareq_free(ZOV_AppData*) {
    current = Request();
}

void loareq_set_object(ZOV_AppData*, char const* object) {
    current.object = object;
}

void loareq_set_attrs(ZOV_AppData*, char const* attrs) {
    current.attrs = Words(attrs);
}

void loareq_set_format(ZOV_AppData*, char const* format) {
    current.format = format;
}

void loareq_set_default_val(ZOV_AppData*, char const* value) {
    current.defaultValue = value;
}

void loareq_set_fnName(ZOV_AppData*, char const*) {}

void loareq_set_fnArg(ZOV_AppData* app, char const* fnArg) {
    current.fnArg = fnArg;
    app->loaState[textWord] = reinterpret_cast<std::uintptr_t>(current.fnArg.data());
}

void loareq_set_context(ZOV_AppData*, char const* context) {
    current.context = context;
}

int format_true_loa_request(ZOV_AppData* app) {
    return Answer(*app, {});
}

int format_con_request(ZOV_AppData* app) {
    return Answer(*app, {});
}

int format_sys_request(ZOV_AppData* app) {
    return Answer(*app, SysRecords(current.object));
}

// --- translation_service.h -----------------------------------------------------------------------

namespace {

bool IsGerman(char const* preferred) {
    return std::strncmp(preferred, "de", 2) == 0;
}

std::string Translation(ZOV_AppData const& app, std::string const& phrase) {
    return IsGerman(app.preferredLang) && phrase == "Storage" ? "Speicher" : phrase;
}

// The phrase as HTML text, for want of a context as well: that is safe in a page.
std::string AsHtml(std::string const& phrase) {
    std::string html;
    for (char const c : phrase) {
        switch (c) {
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '&':
                html += "&amp;";
                break;
            case '"':
                html += "&quot;";
                break;
            default:
                html += c;
        }
    }
    return html;
}

}  // namespace

char* HTTP_Extension_Translation_Lang(char const* preferred) {
    // Anew each time: the library cuts the name at its '-'.
    static char name[8];
    std::strcpy(name, IsGerman(preferred) ? "de-de" : "en-us");
    return name;
}

int Trans_LangExists(char const* code) {
    return std::strcmp(code, "de") == 0 || std::strcmp(code, "en") == 0 ? 1 : 0;
}

void HTTP_Translate_Phrase(ZOV_AppData* app, char* arg) {
    if (arg == nullptr) {
        return;
    }
    std::string const phrase = Translation(*app, arg);
    std::string const text = current.context == "none" ? phrase : AsHtml(phrase);
    std::fwrite(text.data(), 1, text.size(), app->out);
}
