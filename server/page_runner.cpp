#include "page_runner.hpp"

#include <device_log.h>

#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "content_security.hpp"
#include "language.hpp"
#include "query_times.hpp"
#include "refusals.hpp"
#include "timed_stream.hpp"

namespace QuilloServer {
namespace {

constexpr int cookieSeconds = 365 * 24 * 3600;

// Where a page's record writes when no one captures it: a page's text goes to the page's stream.
std::FILE* Nowhere() {
    static std::FILE* const nowhere = std::fopen("/dev/null", "we");
    return nowhere;
}

ZOV_AppData MakeRecord(Incoming const& incoming) {
    ZOV_AppData app = {};
    PreferredLanguage(incoming).copy(app.preferredLang, sizeof app.preferredLang - 1);
    app.uriArgs = incoming.query.empty() ? nullptr : incoming.query.c_str();
    app.out = Nowhere();
    return app;
}

double Milliseconds(std::chrono::nanoseconds duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

// How long the page took, in milliseconds and in the form of Server-Timing (W3C). The time of its
// queries is a part of the other two.
//
//     build;dur=1.234, query;dur=0.890, render;dur=0.567
struct Timing {
    Clock::time_point begin = Clock::now();
    Clock::time_point firstWrite = {};
    Clock::time_point end = {};
    QueryTimes queries = {};

    std::string Text() const {
        char text[96] = "";
        std::snprintf(text, sizeof text, "build;dur=%.3f, query;dur=%.3f, render;dur=%.3f",
                      Milliseconds(firstWrite - begin), Milliseconds(queries.all),
                      Milliseconds(end - firstWrite));
        return text;
    }
};

// "'interfaces' took longest, 12 ms"
std::string LongestQuery(QueryTimes const& queries) {
    if (queries.object[0] == '\0') {
        return "it asked for no object";
    }
    char time[64] = "";
    std::snprintf(time, sizeof time, "%.0f", Milliseconds(queries.longest));
    return std::string("the object '") + queries.object + "' took longest, " + time + " ms";
}

void WarnOfSlowPage(Page const& page, Timing const& timing, int slowMilliseconds) {
    double const taken = Milliseconds(timing.end - timing.begin);
    if (taken >= slowMilliseconds) {
        Log_SpecEntry(logSpecWarn, __FILE__, __LINE__, "page '%s' took %.0f ms (%s): %s",
                      page.name.c_str(), taken, timing.Text().c_str(),
                      LongestQuery(timing.queries).c_str());
    }
}

// A page's text went into a header field: it must not begin another one.
std::string FieldText(std::string const& text) {
    if (text.find_first_of(std::string("\r\n\0", 3)) != std::string::npos) {
        throw std::runtime_error("a line end or a NUL byte in a header field: " + text);
    }
    return text;
}

std::string CookieText(std::string const& name, std::string const& value) {
    std::string const age = std::to_string(value.empty() ? 0 : cookieSeconds);
    return name + "=" + Quillo::PcntEncode(value) + "; Path=/; Max-Age=" + age +
           "; HttpOnly; SameSite=Strict";
}

void AddPageHeaders(Answer& answer, Request const& request, Timing const& timing) {
    answer.headers.emplace_back("Content-Type", "text/html; charset=utf-8");
    answer.headers.emplace_back("Cache-Control", "no-store");
    for (auto const& [name, value] : request.newCookies) {
        answer.headers.emplace_back("Set-Cookie", FieldText(CookieText(name, value)));
    }
    if (!request.redirect.empty()) {
        answer.headers.emplace_back("Location", FieldText(request.redirect));
    }
    answer.headers.emplace_back("Server-Timing", timing.Text());
}

// The page's own answer, or an exception.
Answer Run(Page const& page, Incoming const& incoming, std::string const& token,
           int slowMilliseconds) {
    Timing timing;
    BeginQueryTimes();
    // What was reported for an earlier request is none of this page's.
    Quillo::debugMsgs = Quillo::Div();
    ZOV_AppData app = MakeRecord(incoming);
    Request request = {app, Quillo::GetUriArgs(app, Quillo::UriArgs())};
    request.method = incoming.method;
    request.form = incoming.form;
    request.cookies = incoming.cookies;
    request.token = token;
    TimedBuffer buffer;
    std::ostream out(&buffer);
    // A failure to take memory is the page's failure.
    out.exceptions(std::ios::badbit);
    page.write(request, out);
    timing.end = Clock::now();
    timing.queries = CountedQueryTimes();
    timing.firstWrite = buffer.firstWrite.value_or(timing.end);
    WarnOfSlowPage(page, timing, slowMilliseconds);

    Answer answer;
    answer.status = request.redirect.empty() ? request.status : 303;
    AddPageHeaders(answer, request, timing);
    answer.text = request.redirect.empty() ? std::move(buffer.text) : std::string();
    return answer;
}

Answer Failed(Page const& page, Incoming const& incoming, char const* reason) {
    Log_SpecEntry(logSpecError, __FILE__, __LINE__, "page '%s' failed at %s %s: %s",
                  page.name.c_str(), incoming.method.c_str(), incoming.path.c_str(), reason);
    return Refusal(500);
}

}  // namespace

Answer RunPage(Page const& page, Incoming const& incoming, Sessions const& sessions,
               int slowMilliseconds) {
    try {
        std::string const session = sessions.Find(incoming.cookies);
        Answer answer = Run(page, incoming, sessions.Token(session), slowMilliseconds);
        if (!sessions.IsKnown(incoming.cookies)) {
            answer.headers.emplace_back("Set-Cookie", SessionCookie(session));
        }
        AddCommonHeaders(answer, SecurityPolicy(answer.text));
        return answer;
    } catch (std::exception const& error) {
        return Failed(page, incoming, error.what());
    } catch (...) {
        return Failed(page, incoming, "it threw something that is no std::exception");
    }
}

}  // namespace QuilloServer
