#include "elements/diagnostics.hpp"

#include <climits>
#include <cstdint>
#include <functional>
#include <locale>
#include <set>
#include <sstream>
#include <utility>

#include "support/page_test.hpp"
#include "support/rounds.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using DiagnosticsTest = PageTest;

std::string const file = "tests/elements/diagnostics_test.cpp";

TEST_F(DiagnosticsTest, AReportIsALogEntryAndALine) {
    ReportDiagnostic(logSpecWarn, "Redundant arg %s", "x");
    int const line = __LINE__ - 1;
    ASSERT_EQ(Platform().log.size(), 1U);
    EXPECT_EQ(Platform().log[0].level, "warn");
    EXPECT_EQ(Platform().log[0].file, file);
    EXPECT_EQ(Platform().log[0].line, line);
    EXPECT_EQ(Platform().log[0].format, "Redundant arg %s");
    EXPECT_EQ(DebugLines(),
              (Texts{"At " + file + ":" + std::to_string(line) + ": LOGWARN: Redundant arg x"}));
}

TEST_F(DiagnosticsTest, EachLevelHasItsWord) {
    ReportDiagnostic(logSpecError, "m");
    ReportDiagnostic(logSpecWarn, "m");
    ReportDiagnostic(logSpecInfo, "m");
    EXPECT_EQ(DebugMessages(), (Texts{"LOGERROR: m", "LOGWARN: m", "LOGINFO: m"}));
    EXPECT_EQ(Platform().Messages(), (Texts{"error: m", "warn: m", "info: m"}));
}

TEST_F(DiagnosticsTest, TheWordBelongsToTheLevelAndNotToItsCode) {
    int const codes[] = {logSpecError, logSpecWarn, logSpecInfo};
    logSpecWarn = logSpecError;
    logSpecInfo = logSpecError;
    ReportDiagnostic(logSpecError, "m");
    ReportDiagnostic(logSpecWarn, "m");
    ReportDiagnostic(logSpecInfo, "m");
    logSpecWarn = codes[1];
    logSpecInfo = codes[2];
    EXPECT_EQ(DebugMessages(), (Texts{"LOGERROR: m", "LOGWARN: m", "LOGINFO: m"}));
}

TEST_F(DiagnosticsTest, TheCodeIsReadAtTheTimeOfTheReport) {
    int const before = logSpecWarn;
    logSpecWarn = 4711;
    ReportDiagnostic(logSpecWarn, "m");
    logSpecWarn = before;
    EXPECT_EQ(Platform().log.at(0).code, 4711);
}

TEST_F(DiagnosticsTest, LinesAreKeptInPlacesThatDouble) {
    std::set<std::size_t> capacities;
    for (int i = 0; i < Rounds(1000); ++i) {
        ReportDiagnostic(logSpecInfo, "m");
        capacities.insert(debugMsgs.impl->children.capacity());
    }
    EXPECT_LT(capacities.size(), 20U) << "or each line would move all those before it";
}

TEST_F(DiagnosticsTest, ALineHoldsTheFirst199BytesAndTheLogAllOfThem) {
    for (std::size_t const length : {0U, 198U, 199U, 200U, 250U, 5000U}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        std::string const message(length, 'm');
        ReportDiagnostic(logSpecError, "%s", message.c_str());
        EXPECT_EQ(Platform().log.at(0).message, message);
        EXPECT_EQ(DebugMessages(), (Texts{"LOGERROR: " + message.substr(0, 199)})) << length;
    }
}

TEST_F(DiagnosticsTest, TheLogComesFirstForAReportAndLastForATrace) {
    std::vector<std::size_t> childrenAtLog;
    Platform().onLogEntry = [&] { childrenAtLog.push_back(debugMsgs.impl->children.size()); };
    ReportDiagnostic(logSpecError, "m");
    TraceDiagnostic("t");
    EXPECT_EQ(childrenAtLog, (std::vector<std::size_t>{0, 4}));
}

TEST_F(DiagnosticsTest, WithoutAnElementForLinesTheLogIsToldAllTheSame) {
    Div const kept(debugMsgs);
    debugMsgs.impl.reset();
    ReportDiagnostic(logSpecError, "m");
    TraceDiagnostic("t");
    std::string const line = "At " + file + ":" + std::to_string(__LINE__ - 1) + ": t";
    debugMsgs = kept;
    EXPECT_EQ(Platform().Messages(), (Texts{"error: m", "info: " + line}));
}

TEST_F(DiagnosticsTest, ATraceIsALineWithoutLevelWordWhichTheLogGetsWhole) {
    TraceDiagnostic("{", std::string("name"), "} = {", 12, "}");
    std::string const line = "At " + file + ":" + std::to_string(__LINE__ - 1) + ": {name} = {12}";
    EXPECT_EQ(DebugLines(), (Texts{line}));
    ASSERT_EQ(Platform().log.size(), 1U);
    EXPECT_EQ(Platform().log[0].level, "info");
    EXPECT_EQ(Platform().log[0].format, "%s");
    EXPECT_EQ(Platform().log[0].message, line);
    EXPECT_EQ(Platform().log[0].file, file);
}

TEST_F(DiagnosticsTest, ATraceHasNoLimit) {
    std::string const text(5000, 't');
    TraceDiagnostic(text);
    EXPECT_EQ(DebugMessages(), (Texts{text}));
}

TEST_F(DiagnosticsTest, NumbersInATraceAreDecimal) {
    TraceDiagnostic(0, " ", INT_MIN, " ", INT_MAX, " ", LONG_MIN, " ", ULONG_MAX, " ",
                    std::uintptr_t(4096), " ", -1L, " ", 7U);
    EXPECT_EQ(DebugMessages(), (Texts{"0 -2147483648 2147483647 " + std::to_string(LONG_MIN) + " " +
                                      std::to_string(ULONG_MAX) + " 4096 -1 7"}));
}

TEST_F(DiagnosticsTest, ANullTextInATraceIsEmpty) {
    TraceDiagnostic("a", static_cast<char const*>(nullptr), "b");
    EXPECT_EQ(DebugMessages(), (Texts{"ab"}));
}

class Grouping : public std::numpunct<char> {
    std::string do_grouping() const override { return "\1"; }
    char do_thousands_sep() const override { return '.'; }
};

TEST_F(DiagnosticsTest, AGlobalLocaleThatGroupsDigitsChangesNoLine) {
    std::locale const before = std::locale::global(std::locale(std::locale(), new Grouping));
    ReportDiagnostic(logSpecError, "%d", 1234567);
    TraceDiagnostic(1234567);
    std::locale::global(before);
    std::string const line = std::to_string(__LINE__ - 3);
    EXPECT_EQ(DebugLines().at(0), "At " + file + ":" + line + ": LOGERROR: 1234567");
    EXPECT_EQ(DebugMessages().at(1), "1234567");
}

TEST_F(DiagnosticsTest, MarkupInAMessageIsShownAndNotObeyed) {
    ReportDiagnostic(logSpecError, "<b>");
    std::string const html = Html(debugMsgs);
    EXPECT_NE(html.find("LOGERROR: &lt;b&gt;<br >\n"), std::string::npos);
}

TEST_F(DiagnosticsTest, APassOverDebugMsgsWritesWhatItCausesAndEnds) {
    ReportDiagnostic(logSpecWarn, "bad byte \x01");
    std::string const html = Html(debugMsgs);
    // The line is reported while it is written; that report's own line is written in the same pass,
    // and what is reported by it goes to the log alone.
    EXPECT_EQ(DebugMessages(),
              (Texts{"LOGWARN: bad byte \x01", "LOGWARN: Don't know tag for '\x01'"}));
    EXPECT_EQ(Platform().Messages(),
              (Texts{"warn: bad byte \x01", "warn: Don't know tag for '\x01'",
                     "warn: Don't know tag for '\x01'"}));
    EXPECT_NE(html.find("LOGWARN: bad byte _<br >\n"), std::string::npos);
    EXPECT_NE(html.find("LOGWARN: Don't know tag for '_'<br >\n</div>\n"), std::string::npos);

    // Outside a pass a report is a line again.
    ReportDiagnostic(logSpecInfo, "later");
    ASSERT_EQ(DebugMessages().size(), 3U);
    EXPECT_EQ(DebugMessages().back(), "LOGINFO: later");
}

// Runs `work` when it is first written.
struct Worker : ElementImpl {
    explicit Worker(std::function<void(Renderer&)> doWork)
        : ElementImpl("worker", true), work(std::move(doWork)) {}
    void Render(Renderer& r, int) const override {
        if (!hasWorked) {
            hasWorked = true;
            work(r);
        }
    }
    std::function<void(Renderer&)> const work;
    mutable bool hasWorked = false;
};

Element Working(std::function<void(Renderer&)> const& work) {
    return Element(boost::shared_ptr<ElementImpl>(new Worker(work)));
}

TEST_F(DiagnosticsTest, APassWithinALineThatAPassCausedAddsNothing) {
    Element const innerPass = Working([](Renderer& r) { debugMsgs.impl->Render(r, 0); });
    debugMsgs << Text("\x01", true) << Working([&](Renderer&) { debugMsgs << innerPass; });
    Html(debugMsgs);
    // The report of the first text is a line more; all later ones are for the log alone.
    EXPECT_EQ(debugMsgs.impl->children.size(), 5U);
    EXPECT_EQ(Platform().log.size(), 4U);
}

TEST_F(DiagnosticsTest, ASecondPassReportsAgain) {
    ReportDiagnostic(logSpecWarn, "\x01");
    Html(Div() << debugMsgs << debugMsgs);
    // 1 line; the first pass adds 1, the second 1 for each of the 2 there are.
    EXPECT_EQ(DebugMessages().size(), 4U);
}

// Fails once so many bytes were written.
class FailingBuffer : public std::streambuf {
public:
    explicit FailingBuffer(int bytes) : left(bytes) {}

private:
    int_type overflow(int_type c) override {
        if (left-- > 0) {
            return c;
        }
        throw std::string("stream");
    }

    int left;
};

TEST_F(DiagnosticsTest, AStreamThatThrowsInAPassLeavesReportsAsTheyWere) {
    ReportDiagnostic(logSpecWarn, "\x01");
    for (int bytes = 0; bytes < Rounds(300); ++bytes) {
        FailingBuffer buffer(bytes);
        std::ostream out(&buffer);
        out.exceptions(std::ios::badbit);
        Renderer r(out);
        try {
            debugMsgs.impl->Render(r, 0);
        } catch (std::string const&) {
        }
        std::size_t const lines = DebugLines().size();
        ReportDiagnostic(logSpecInfo, "later");
        ASSERT_EQ(DebugLines().size(), lines + 1) << bytes;
        debugMsgs = Div();
        ReportDiagnostic(logSpecWarn, "\x01");
    }
}

TEST_F(DiagnosticsTest, AFreshDivInItsPlaceTakesWhatTheOldOneCauses) {
    ReportDiagnostic(logSpecWarn, "\x01");
    Div const old = debugMsgs;
    debugMsgs = Div();
    Html(old);
    EXPECT_EQ(old.impl->children.size(), 2U);
    EXPECT_EQ(DebugMessages(), (Texts{"LOGWARN: Don't know tag for '\x01'"}));
}

TEST_F(DiagnosticsTest, ReportsInDebugMsgsAreIndentedLikeChildren) {
    isDebug = true;
    TraceDiagnostic("t");
    std::string const line = DebugLines().at(0);
    EXPECT_EQ(Html(debugMsgs, 1), "  <div>\n    " + line + "<br >\n  </div>\n");
}

}  // namespace
