// Reports and traces with any text in them: the device log, `debugMsgs`, and a page that shows
// `debugMsgs` while it grows.
#include <unistd.h>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"
#include "tree_model.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

// Each step makes at least one report, whose message holds `text`; what it says is added to
// `expected`.
void Report(unsigned step, std::string const& text, Texts& expected) {
    bool value = true;
    std::string const shown = text.c_str();
    std::string const failed = "error: Failed to get config value: " + shown;
    if (step == 0) {
        Platform().settings.clear();
        ExpectEqual(GetConfig(TightText(text).c_str(), value), 1, "GetConfig: 1 says it failed");
        ExpectEqual(value, true, "GetConfig: a failure leaves the value");
        expected.push_back(failed);
    } else if (step == 1) {
        Platform().setResult = -1;
        ExpectEqual(PutConfig(TightText(text).c_str(), value), 1, "PutConfig: 1 says it failed");
        expected.push_back(failed);
    } else if (step == 2) {
        Platform().updateResult = -7;
        ExpectEqual(PutPersistentConfig(text, false), 1, "PutPersistentConfig: 1 says it failed");
        std::string const assignment = (text + "=FALSE").c_str();
        expected.push_back("error: ConfigUpdate(" + assignment + ") failed status=-7");
    } else {
        expected.push_back("warn: URI arg missing =");
        std::string dir;
        std::string page;
        UriArgs args;
        std::string uri = "?" + text;
        for (char& c : uri) {
            c = c == '/' || c == '&' || c == '=' ? '.' : c;
        }
        Expect(ParseUri(uri, dir, page, args), "ParseUri: true says that there was a problem");
        expected.push_back(std::string("warn: Invalid URI: ") + uri.c_str());
    }
}

// Settings that can be had and set.
void CheckSettings(std::string const& name, int number) {
    std::string const shown = name.c_str();
    Platform().settings[shown] = number;
    Platform().trace.clear();
    bool value = number == 0;
    ExpectEqual(GetConfig(TightText(name).c_str(), value), 0, "GetConfig: 0 says it is done");
    ExpectEqual(value, number != 0, "GetConfig: any number but 0 is true");
    ExpectEqual(PutConfig(shown.c_str(), value), 0, "PutConfig: 0 says it is done");
    ExpectEqual(PutPersistentConfig(name, value), 0, "PutPersistentConfig: 0 says it is done");
    std::string const text = value ? "TRUE" : "FALSE";
    ExpectEqual(Platform().trace,
                Texts{"Cfg_GetBoolAttrValue " + shown, "Cfg_SetAttrValue " + shown + " " + text,
                      std::string("ConfigUpdate ") + (name + "=" + text).c_str()},
                "settings: the store is told once");
}

Texts LinesOf(Element const& lines) {
    Texts texts;
    for (auto const& child : lines.impl->children) {
        if (auto const* const text = dynamic_cast<TextImpl const*>(child.get())) {
            texts.push_back(text->text);
        }
    }
    return texts;
}

// What a page shows that ends with `lines`: in order, with a line break behind each.
std::string ShownLines(Texts const& lines) {
    Texts ignored;
    std::string html;
    for (std::string const& line : lines) {
        html += EscapedModel(line, ignored) + "<br >\n";
    }
    return html;
}

// Writing a line with control bytes reports each of them: in lines of their own, which are written
// too, and whose own control bytes are reported to the device log alone.
void CheckPage(bool isInScript) {
    Texts const before = LinesOf(debugMsgs);
    Element const around(
        boost::shared_ptr<ElementImpl>(new ElementImpl(isInScript ? "script" : "div", false)));
    around << debugMsgs;
    Texts reports;
    for (std::string const& line : before) {
        EscapedModel(line, reports);
    }
    std::size_t const logged = Platform().log.size();
    std::string const html = Html(around);
    Texts const after = LinesOf(debugMsgs);
    if (isInScript) {
        ExpectEqual(after, before, "a script's lines are not filtered");
        return;
    }
    ExpectEqual(Texts(after.begin(), after.begin() + static_cast<std::ptrdiff_t>(before.size())),
                before, "lines stay when they are written");
    ExpectEqual(after.size() - before.size(), reports.size(),
                "a control byte in a line is reported in a line, and that one in none");
    ExpectEqual(Platform().log.size() - logged, 2 * reports.size(),
                "a control byte in any line is reported to the log");
    std::string const lines = before.empty() ? "" : "\n" + ShownLines(after);
    ExpectEqual(html, "<div>\n<div>" + lines + "</div>\n</div>\n",
                "a page shows the lines, and those that writing them made");
}

// The switch is worked out once, from a file that nobody has.
void CheckSwitch(bool value) {
    isDebugInit = false;
    Expect(!IsDebug() && isDebugInit, "IsDebug: without its file, no");
    isDebug = value;
    ExpectEqual(IsDebug(), value, "IsDebug: is not asked again");
    isDebug = false;
}

// Without an element for lines, the device log is told all the same.
void CheckWithoutLines(unsigned step, std::string const& text) {
    ResetLibrary();
    debugMsgs.impl.reset();
    Texts expected;
    Report(step, text, expected);
    Texts logged;
    for (LogEntry const& entry : Platform().log) {
        logged.push_back(entry.level + ": " + entry.message);
    }
    ExpectEqual(logged, expected, "the log is told without debugMsgs");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    bool const isInScript = feed.Below(4) == 3;
    Texts expected;
    std::string text;
    unsigned step = 0;
    CheckSettings(input, feed.Number());
    if (access("/do-quillo-debug", F_OK) != 0) {
        CheckSwitch(isInScript);
    }
    for (unsigned left = 1 + feed.Below(4); left > 0; --left) {
        step = feed.Below(4);
        text = feed.Text();
        Report(step, text, expected);
    }
    ExpectEqual(Reports(), expected, "reports are made in order");
    CheckPage(isInScript);
    CheckWithoutLines(step, text);
    ResetLibrary();
}
