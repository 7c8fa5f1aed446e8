#include "library.hpp"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "oracle.hpp"

using namespace Quillo;

namespace {

// A message in a line of `debugMsgs` is cut to this many bytes.
constexpr std::size_t longestMessage = 199;

// The line of `debugMsgs` for an entry. A trace is the same in both places; nothing: it has no
// line.
std::string LineOf(LogEntry const& entry) {
    if (entry.format == "%s") {
        return entry.message;
    }
    std::string line;
    line.reserve(longestMessage + 100);
    line.append("At ").append(entry.file).append(":").append(std::to_string(entry.line));
    line += entry.level == "error"  ? ": LOGERROR: "
            : entry.level == "warn" ? ": LOGWARN: "
                                    : ": LOGINFO: ";
    std::size_t const length = std::strlen(entry.message.c_str());
    return line.append(entry.message, 0, std::min(length, longestMessage));
}

}  // namespace

void ResetLibrary() {
    Platform() = RecordingPlatform();
    debugMsgs = Div();
    isDebug = false;
    isDebugInit = true;
    g_language = nullptr;
}

std::vector<std::string> Reports() {
    std::vector<std::string> reports;
    auto const& children = debugMsgs.impl->children;
    std::size_t at = 0;
    reports.reserve(Platform().log.size());
    for (LogEntry const& entry : Platform().log) {
        reports.push_back(entry.level + ": " + entry.message);
        if (entry.level == "force") {
            continue;
        }
        Expect(at + 1 < children.size(), "every report is a line of debugMsgs", entry.message);
        auto const* const text = dynamic_cast<TextImpl const*>(children[at].get());
        Expect(text != nullptr && text->filter, "a line of debugMsgs is a filtered text");
        ExpectEqual(text->text, LineOf(entry), "a line of debugMsgs is the entry of the log");
        Expect(dynamic_cast<BrImpl const*>(children[at + 1].get()) != nullptr,
               "a line of debugMsgs ends with a line break");
        at += 2;
    }
    Expect(at == children.size(), "every line of debugMsgs is an entry of the log");
    return reports;
}

std::string Html(Element const& root, int level) {
    std::ostringstream page;
    Renderer r(page);
    root.impl->Render(r, level);
    return page.str();
}

TightText::TightText(std::string const& text) : bytes(new char[std::strlen(text.c_str()) + 1]) {
    std::strcpy(bytes.get(), text.c_str());
}
