#include "elements/diagnostics.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace Quillo {

Div debugMsgs;
bool isDebugInit = false;
bool isDebug = false;

bool IsDebug() {
    if (!isDebugInit) {
        struct stat status;
        isDebug = stat("/do-quillo-debug", &status) == 0;
        isDebugInit = true;
    }
    return isDebug;
}

namespace Diagnostics {
namespace {

// What a message in a debug line is cut to, its NUL included.
constexpr std::size_t messageSize = 200;

// True while a line is being written that was appended during the running pass over `debugMsgs`.
bool isLogOnly = false;

// Levels are told apart by the variable and not by its value: a platform may give two levels one
// code.
char const* LevelWord(int const* level) {
    if (level == &logSpecError) {
        return "LOGERROR: ";
    }
    return level == &logSpecWarn ? "LOGWARN: " : "LOGINFO: ";
}

// Room for two children more, so that adding a text and its line break can no longer fail.
void ReserveTwo(std::vector<boost::shared_ptr<ElementImpl>>& children) {
    if (children.capacity() - children.size() < 2) {
        children.reserve(std::max(children.size() * 2, children.size() + 2));
    }
}

void AppendLine(std::string const& line) {
    if (isLogOnly || !debugMsgs.impl) {
        return;
    }
    Text const text(line, true);
    Br const lineBreak;
    ReserveTwo(debugMsgs.impl->children);
    debugMsgs << text << lineBreak;
}

// The trace without a heap: as much of the line as a fixed buffer holds.
void LogShortened(char const* file, int line, Pieces pieces) noexcept {
    char text[messageSize];
    std::size_t used = static_cast<std::size_t>(
        std::max(0, std::snprintf(text, sizeof text, "At %s:%d: ", file, line)));
    for (Piece const& piece : pieces) {
        used = std::min(used, sizeof text - 1);
        std::size_t const taken = std::min(piece.length(), sizeof text - 1 - used);
        std::memcpy(text + used, piece.begin(), taken);
        used += taken;
    }
    text[std::min(used, sizeof text - 1)] = '\0';
    Log_SpecEntry(logSpecInfo, file, line, "%s", text);
}

// Sets `isLogOnly` for the time of its scope.
class LogOnlyScope {
public:
    explicit LogOnlyScope(bool logOnly) : outer(isLogOnly) { isLogOnly = outer || logOnly; }
    LogOnlyScope(LogOnlyScope const&) = delete;
    LogOnlyScope& operator=(LogOnlyScope const&) = delete;
    ~LogOnlyScope() { isLogOnly = outer; }

private:
    bool const outer;
};

}  // namespace

void AppendReport(int const* level, char const* file, int line, char const* format, ...) noexcept {
    char message[messageSize] = "";
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    try {
        AppendLine(Joined({"At ", file, ":", line, ": ", LevelWord(level), message}));
    } catch (...) {
        // The device log has the message.
    }
}

void Trace(char const* file, int line, Pieces pieces) noexcept {
    std::string text;
    try {
        std::string traced = Joined({"At ", file, ":", line, ": "});
        Append(traced, pieces);
        text.swap(traced);
        AppendLine(text);
    } catch (...) {
        // Whatever was built of the line, the device log is told below.
    }
    if (text.empty()) {
        LogShortened(file, line, pieces);
    } else {
        Log_SpecEntry(logSpecInfo, file, line, "%s", text.c_str());
    }
}

void RenderDebugLines(ElementImpl const& lines, Renderer& r, int level) {
    std::size_t const before = lines.children.size();
    for (std::size_t i = 0; i < lines.children.size(); ++i) {
        LogOnlyScope const scope(i >= before);
        Element::Checked(lines.children[i]).Render(r, level);
    }
}

}  // namespace Diagnostics
}  // namespace Quillo
