// Calls the functions that read a request or write what it said into a page, for callgrind to
// count.
#include <quillo>
#include <quillo_kit/safe.hpp>
#include <stdexcept>

#include "counted_calls.hpp"
#include "readings.hpp"

using namespace Bench;
using namespace Quillo;
using namespace QuilloKit;

namespace {

void CountReadings() {
    for (Reading const& reading : Readings()) {
        CountCalls(reading.name, reading.call,
                   [&](std::size_t size) { return Repeated(reading.pattern, size); });
        // One for each function: its pattern "&" stands for the texts of queries.
        if (reading.pattern == "&") {
            CountCalls(reading.name.substr(0, reading.name.find(',')) + ", 0=1&1=1&", reading.call,
                       Numbered("#=1&"));
        }
    }
}

void CountTextFunctions() {
    CountPatterns("PcntDecode", [](std::string const& text) { PcntDecode(text.c_str(), nullptr); },
                  {"a", "%", "%4", "%41", "%00"});
    CountPatterns("PcntEncode", [](std::string const& text) { PcntEncode(text); },
                  {"a", " ", "\xE9"});
    CountPatterns("Filter", [](std::string const& text) { Filter(text); }, {"a", "<", "\x01"});
    CountPatterns("AppendUriArgs", [](std::string const& text) { AppendUriArgs(text, text); },
                  {"a", "?", "&", "#", "a=1&"});
    CountPatterns("AddSlashes", [](std::string const& text) { AddSlashes(text); },
                  {"a", "\\", "'"});
    CountPatterns("EscapeJavascriptString",
                  [](std::string const& text) { EscapeJavascriptString(text); }, {"a", "\\", "\n"});
    CountPatterns("IsLessUtf8Collate",
                  [](std::string const& text) { IsLessUtf8Collate(text, text); },
                  {"a", "\xC3\xA4", "\xFF"});
}

void CountKit() {
    CountPatterns("SafeAttr", [](std::string const& text) { SafeAttr(text); }, {"a", "'", "&"});
    CountPatterns("SafeUrl", [](std::string const& text) { SafeUrl(text); },
                  {"a", ":", "/", " ", "\t", "a:", "http:", "&"});
    CountPatterns("SafeStyle", [](std::string const& text) { SafeStyle("border", text); },
                  {"a", "1", "1.", "#", " ", "a ", "1px ", "#fff "});
    CountPatterns("JsString", [](std::string const& text) { JsString(text); },
                  {"a", "<", "\\", "\xE2", "\xE2\x80\xA8"});
    CountPatterns("SafeName", [](std::string const& text) { SafeName(text); }, {"a", "_1"});
}

}  // namespace

int main() {
    CountReadings();
    CountTextFunctions();
    CountKit();
    return 0;
}
