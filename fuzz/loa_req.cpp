// `LoaReq` and `GetObject` with any answer, and with system calls and services that fail.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "device/system_calls.hpp"
#include "feed.hpp"
#include "request.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;
typedef std::vector<Texts> Rows;

constexpr std::size_t chunkSize = 256;

struct Query {
    int type = 0;
    std::string object;
    Texts attrs;
    std::string answer;
    int initializeResult = 0;
    int formatResult = 0;
};

struct Expected {
    int status = 1;
    Rows rows;
    Texts reports;
    Texts calls;
};

// How the system calls go; mostly as they should.
void Read(Feed& feed, SystemCalls& calls) {
    static int const errors[] = {EMFILE, ENOMEM, EINTR, EAGAIN, EIO, EBADF};
    unsigned const fault = feed.Below(16);
    calls.pipeError = fault == 1 ? errors[feed.Below(2)] : 0;
    calls.fdopenError = fault == 2 ? errors[feed.Below(2)] : 0;
    calls.pollError = fault == 8 ? errors[feed.Below(6)] : 0;
    calls.closeError = fault == 9 ? errors[feed.Below(6)] : 0;
    for (unsigned left = fault >= 3 && fault < 8 ? 1 + feed.Below(4) : 0; left > 0; --left) {
        unsigned const kind = feed.Below(6);
        if (kind == 4) {
            calls.reads.push_back({ReadStep::Fails, errors[feed.Below(6)]});
        } else if (kind == 5) {
            calls.reads.push_back({ReadStep::Claims, 257 + static_cast<ssize_t>(feed.Byte())});
        } else {
            calls.reads.push_back(
                {ReadStep::Real, kind == 0 ? 1 + static_cast<ssize_t>(feed.Byte()) : 256});
        }
    }
}

Query Read(Feed& feed) {
    Query query;
    unsigned const kind = feed.Below(16);
    query.type = kind == 15 ? feed.Number() : static_cast<int>(kind % 3);
    query.initializeResult = feed.Below(16) == 15 ? 1 : 0;
    query.formatResult = feed.Below(16) == 15 ? -1 : 0;
    query.object = feed.Text();
    for (unsigned left = feed.Below(5); left > 0; --left) {
        query.attrs.push_back(feed.Text());
    }
    unsigned const repeats = feed.Below(8) == 7 ? feed.Byte() : 1;
    std::string const piece = feed.Rest();
    for (unsigned left = std::min(repeats, 20000U / (1 + static_cast<unsigned>(piece.size())) + 1);
         left > 0; --left) {
        query.answer += piece;
    }
    return query;
}

// What is captured of `answer`, and what is reported of the reads.
std::string Captured(std::string const& answer, std::deque<ReadStep> reads, Texts& reports) {
    std::string captured;
    for (std::size_t at = 0;;) {
        ReadStep step = {ReadStep::Real, chunkSize};
        if (!reads.empty()) {
            step = reads.front();
            reads.pop_front();
        }
        if (step.kind == ReadStep::Fails) {
            reports.push_back(std::string("error: Finish: read() failed - ") +
                              std::strerror(static_cast<int>(step.number)) +
                              " (truncating result)");
            break;
        }
        if (step.kind == ReadStep::Claims) {
            reports.push_back("error: Finish: Huh?  " + std::to_string(step.number) + " > 256");
            break;
        }
        std::string const chunk =
            answer.substr(std::min(at, answer.size()),
                          std::min(chunkSize, static_cast<std::size_t>(step.number)));
        captured += chunk;
        at += chunk.size();
        if (chunk.size() < chunkSize) {
            break;
        }
    }
    return captured.c_str();
}

// The reports of a beginning that fails; none: it does not.
Texts InitReports(SystemCalls const& calls, Query const& query) {
    std::string const init = "error: Init: ";
    if (calls.pipeError != 0) {
        return {init + "pipe() failed - " + std::strerror(calls.pipeError)};
    }
    if (calls.fdopenError != 0) {
        return {init + "fdopen() failed - " + std::strerror(calls.fdopenError)};
    }
    return query.initializeResult != 0 ? Texts{init + "loa_initialize_loareq() failed"} : Texts();
}

void TakeRows(std::string const& answer, std::size_t count, Expected& expected) {
    std::string rest = answer;
    while (!rest.empty()) {
        std::size_t const end = rest.find('\n');
        std::string line = rest.substr(0, end);
        rest = end == std::string::npos ? "" : rest.substr(end + 1);
        expected.rows.emplace_back(1);
        for (char const c : line) {
            if (c == '\t') {
                expected.rows.back().emplace_back();
            } else {
                expected.rows.back().back() += c;
            }
        }
        if (end == std::string::npos) {
            expected.reports.push_back("warn: GetObject: Missing \\n at end of result string");
        }
    }
    for (Texts& row : expected.rows) {
        if (row.size() != count) {
            expected.reports.push_back(
                "warn: GetObject:  Got back unexpected number of "
                "attributes: " +
                std::to_string(row.size()) + " instead of " + std::to_string(count));
            row.resize(count);
        }
    }
}

// The texts that the service is told. A line ends at a NUL byte in it.
void TakeSettings(Query const& query, Texts& calls) {
    std::string attrs = query.attrs[0];
    std::string format = "%1";
    for (std::size_t i = 1; i < query.attrs.size(); ++i) {
        attrs += " " + query.attrs[i];
        format += "\t%" + std::to_string(i + 1);
    }
    calls.push_back(std::string("loareq_set_object ") + query.object.c_str());
    calls.push_back(std::string("loareq_set_attrs ") + attrs.c_str());
    calls.push_back("loareq_set_format " + format + "\n");
    calls.push_back("loareq_set_default_val Unavailable");
}

Expected ByTheRules(SystemCalls const& calls, Query const& query) {
    Expected expected;
    expected.reports = InitReports(calls, query);
    if (calls.pipeError == 0 && calls.fdopenError == 0) {
        expected.calls.push_back("loareq_initialize");
    }
    if (!expected.reports.empty()) {
        expected.reports.push_back("error: GetObject: LoaReq::Init() failed");
        return expected;
    }
    if (query.attrs.empty()) {
        expected.reports.push_back("error: GetObject:  No attributes were supplied!");
        return expected;
    }
    TakeSettings(query, expected.calls);
    static char const* const formatters[] = {"format_true_loa_request", "format_con_request",
                                             "format_sys_request"};
    bool const isKind = query.type >= 0 && query.type < 3;
    std::string const formatter = isKind ? formatters[query.type] : "";
    if (isKind) {
        expected.calls.push_back(formatter);
    }
    if (isKind && query.formatResult != 0) {
        expected.reports.push_back("error: GetObject: " + formatter + "() failed");
        return expected;
    }
    expected.calls.push_back("loareq_free");
    std::string const answer = Captured(isKind ? query.answer : "", calls.reads, expected.reports);
    if (answer == "Unavailable") {
        expected.reports.push_back("error: GetObject:  object is \"Unavailable\"");
        return expected;
    }
    expected.status = 0;
    TakeRows(answer, query.attrs.size(), expected);
    return expected;
}

void CheckQuery(Query const& query, SystemCalls& calls, bool isAliased) {
    Platform().answer = query.answer;
    Platform().initializeResult = query.initializeResult;
    Platform().formatResult = query.formatResult;
    Expected const expected = ByTheRules(calls, query);
    WatchedRequest request;
    std::fill(std::begin(request.app.loaState), std::end(request.app.loaState), 4711);
    Platform().onInitialize = [](ZOV_AppData const* app) {
        ExpectEqual(std::count(std::begin(app->loaState), std::end(app->loaState), 0U),
                    std::ptrdiff_t{8}, "LoaReq: a request begins with nothing in its state");
    };
    Rows rows = {{query.object}, query.attrs};
    int const status =
        GetObject(request.app, static_cast<ObjectType>(query.type),
                  isAliased ? rows[0][0] : query.object, isAliased ? rows[1] : query.attrs, rows);
    calls.reads.clear();
    request.CheckIsLeftAlone();
    ExpectEqual(Reports(), expected.reports, "GetObject: every failure is reported");
    ExpectEqual(ServiceCalls(), expected.calls, "GetObject: the service is told what is asked");
    ExpectEqual(status, expected.status, "GetObject: 0, or 1 when it failed");
    ExpectEqual(rows, expected.rows, "GetObject: a row a line, a value an attribute");
}

// The capture by itself: what is written to the output is what comes back, once.
void CheckCapture(std::string const& text, bool isFinished) {
    ResetLibrary();
    WatchedRequest request;
    {
        LoaReq capture(request.app);
        ExpectEqual(capture.Finish(), std::string(), "Finish: without Init there is no answer");
        ExpectEqual(capture.Init(), 0, "Init: 0 says that it is open");
        std::fwrite(text.data(), 1, text.size(), request.app.out);
        if (isFinished) {
            ExpectEqual(capture.Finish(), std::string(text.c_str()), "Finish: what was written");
            ExpectEqual(capture.Finish(), std::string(), "Finish: once");
        }
    }
    request.CheckIsLeftAlone();
    ExpectEqual(Reports(), Texts(), "LoaReq: nothing is reported");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    bool const isAliased = feed.Bit();
    bool const isFinished = feed.Bit();
    Query query;
    {
        SystemCalls calls;
        Read(feed, calls);
        query = Read(feed);
        CheckQuery(query, calls, isAliased);
    }
    CheckCapture(query.answer, isFinished);
    ResetLibrary();
}
