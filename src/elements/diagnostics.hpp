// How the library tells of a problem: an entry in the device log, and a line in `debugMsgs`.
//
//     At src/elements/rendering.cpp:104: LOGERROR: Render:  each form must have a name
//     At src/text/uri_args.cpp:88: LANGUAGE = en
//
// A line is one `Text`, escaped when it is written, and one `Br`.
#ifndef QUILLO_ELEMENTS_DIAGNOSTICS_HPP
#define QUILLO_ELEMENTS_DIAGNOSTICS_HPP

#include <device_log.h>
#include <quillo>

#include "elements/joined.hpp"
#include "elements/plain_text.hpp"

// Reports a problem at `level`, which is one of logSpecError, logSpecWarn and logSpecInfo. The
// message is a printf format, a literal, and its arguments; they are evaluated twice. The device
// log comes first and gets the whole message; the line holds its first 199 bytes behind a level
// word. Never throws: when memory runs out, or while `debugMsgs` must not grow, the log alone is
// told.
#define ReportDiagnostic(level, ...)                                                    \
    do {                                                                                \
        Log_SpecEntry((level), __FILE__, __LINE__, __VA_ARGS__);                        \
        ::Quillo::Diagnostics::AppendReport(&(level), __FILE__, __LINE__, __VA_ARGS__); \
    } while (false)

// Leaves a trace: a line made of texts and whole numbers, of any length. `debugMsgs` comes first;
// the device log then gets the same line at info level. Never throws: when there is no memory for
// the line, the log gets its first 199 bytes.
#define TraceDiagnostic(...) ::Quillo::Diagnostics::Trace(__FILE__, __LINE__, {__VA_ARGS__})

namespace Quillo::Diagnostics {

void AppendReport(int const* level, char const* file, int line, char const* format, ...) noexcept
    __attribute__((format(printf, 4, 5)));
void Trace(char const* file, int line, Pieces pieces) noexcept;

// Writes the children of `lines`, the element of `debugMsgs`. Lines that are appended meanwhile are
// written too. What is reported by writing such a line goes to the device log alone, so that the
// pass ends.
void RenderDebugLines(ElementImpl const& lines, Renderer& r, int level);

}  // namespace Quillo::Diagnostics

#endif
