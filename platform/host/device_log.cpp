// The device log: one line an entry, on standard error.
//
//     2024-05-01T12:30:05.123+02:00 [4711] warning src/text/filter.cpp:31: Filter: bad byte \x01
//     time                          process level  file and line           message
//
// Control bytes and backslashes of the message and of the file name are escaped (printable_text),
// so an entry is always one line. An entry that cannot be written in this way, for want of memory,
// is written from a buffer on the stack: in the same form, without the fraction of the second, and
// cut when it is long.
//
// An entry that the system does not take is lost. Of one that it takes in part, as a full disk
// does, the beginning stays, and the next entry begins a line of its own.
#include <spdlog/logger.h>
#include <spdlog/sinks/base_sink.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/printable_text.hpp"

int logSpecError = 1;
int logSpecWarn = 2;
int logSpecInfo = 3;
int logSpecForceInfo = 4;

namespace QuilloHost {

namespace {

using Severity = spdlog::level::level_enum;

std::atomic<Severity> threshold{spdlog::level::info};

// Whether the last entry stands there without its end.
std::atomic<bool> isCut{false};

// What one entry says, apart from its message.
struct EntryHead {
    Severity severity;
    char const* file;  // never null
    int line;
};

// An unknown level code counts as an error: it is better to see too much than too little.
Severity SeverityOf(int level) noexcept {
    if (level == logSpecInfo || level == logSpecForceInfo)
        return spdlog::level::info;
    return level == logSpecWarn ? spdlog::level::warn : spdlog::level::err;
}

bool IsWanted(int level) noexcept {
    return level == logSpecForceInfo || SeverityOf(level) >= threshold.load();
}

// How many bytes of `text` the system takes.
std::size_t Write(std::string_view text) noexcept {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t const count = write(STDERR_FILENO, text.data() + done, text.size() - done);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (count == 0 || errno != EINTR)
            break;
    }
    return done;
}

void WriteLine(std::string_view line) noexcept {
    if (isCut && Write("\n") == 0)
        return;
    std::size_t const done = Write(line);
    isCut = done != 0 && done != line.size();
}

// Not by stdio, which leaves off an entry when a signal interrupts it.
class StderrSink : public spdlog::sinks::base_sink<std::mutex> {
protected:
    void sink_it_(spdlog::details::log_msg const& message) override {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        WriteLine(std::string_view(line.data(), line.size()));
    }
    void flush_() override {}
};

// Never destroyed, since entries are made until the very end of the process.
spdlog::logger& Logger() {
    static spdlog::logger& logger = [&]() -> spdlog::logger& {
        auto sink = std::make_shared<StderrSink>();
        auto made = std::make_unique<spdlog::logger>("device", std::move(sink));
        made->set_pattern("%Y-%m-%dT%H:%M:%S.%e%z [%P] %l %v");
        // The logger swallows what goes wrong unless its handler throws.
        made->set_error_handler([](std::string const& why) { throw std::runtime_error(why); });
        return *made.release();
    }();
    return logger;
}

// The message, or the bare format when the two do not go together.
__attribute__((format(printf, 1, 0))) std::string Message(char const* format, std::va_list args) {
    std::va_list measured;
    va_copy(measured, args);
    int const length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return std::string("(cannot be formatted) ") + format;
    std::string message(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(message.data(), message.size(), format, args);
    message.pop_back();
    return message;
}

void WriteEntry(EntryHead const& head, std::string const& message) {
    std::string text;
    AppendPrintable(text, head.file);
    text += ':' + std::to_string(head.line) + ": ";
    AppendPrintable(text, message);
    Logger().log(spdlog::source_loc(), head.severity, spdlog::string_view_t(text));
}

// Text in a buffer of fixed size; what does not fit is dropped.
struct FixedText {
    char bytes[4096];
    std::size_t length = 0;

    void append(char const* text, std::size_t count) noexcept {
        std::size_t const kept = std::min(count, sizeof bytes - length);
        std::memcpy(bytes + length, text, kept);
        length += kept;
    }
    void append(char const* text) noexcept { append(text, std::strlen(text)); }
};

void AppendHead(FixedText& out, EntryHead const& head) noexcept {
    char text[64] = "";
    std::time_t const now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    out.append(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local));
    std::strftime(text, sizeof text, "%z", &local);  // "+0200"
    out.append(text, 3);
    out.append(":");
    out.append(text + 3, 2);
    char const* const word = head.severity == spdlog::level::err    ? "error"
                             : head.severity == spdlog::level::warn ? "warning"
                                                                    : "info";
    std::snprintf(text, sizeof text, " [%ld] %s ", static_cast<long>(getpid()), word);
    out.append(text);
    AppendPrintable(out, std::string_view(head.file).substr(0, 1024));
    std::snprintf(text, sizeof text, ":%d: ", head.line);
    out.append(text);
}

// Writes the entry without taking memory.
__attribute__((format(printf, 2, 0))) void WriteFixedEntry(EntryHead const& head,
                                                           char const* format,
                                                           std::va_list args) noexcept {
    char message[2048];
    bool const isFormatted = std::vsnprintf(message, sizeof message, format, args) >= 0;
    FixedText text;
    AppendHead(text, head);
    AppendPrintable(text, isFormatted ? message : format);
    text.length = std::min(text.length, sizeof text.bytes - 1);
    text.append("\n");
    WriteLine(std::string_view(text.bytes, text.length));
}

}  // namespace

void SetLogThreshold(LogLevel lowest) noexcept {
    threshold.store(lowest == LogLevel::Error     ? spdlog::level::err
                    : lowest == LogLevel::Warning ? spdlog::level::warn
                                                  : spdlog::level::info);
}

}  // namespace QuilloHost

void Log_SpecEntry(int level, char const* file, int line, char const* format, ...) {
    using namespace QuilloHost;
    if (!IsWanted(level))
        return;
    EntryHead const head{SeverityOf(level), file == nullptr ? "-" : file, line};
    std::va_list args;
    std::va_list spare;
    va_start(args, format);
    va_copy(spare, args);
    try {
        WriteEntry(head, Message(format, args));
    } catch (...) {
        WriteFixedEntry(head, format, spare);
    }
    va_end(spare);
    va_end(args);
}
