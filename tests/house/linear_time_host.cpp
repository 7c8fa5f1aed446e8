// Calls the functions of the host platform and of the page server that read what others wrote, for
// callgrind to count.
#include <content_security.hpp>
#include <host/host.hpp>
#include <host_names.hpp>
#include <incoming.hpp>
#include <listener.hpp>
#include <query.hpp>
#include <quillo>
#include <request_head.hpp>
#include <session.hpp>
#include <static_files.hpp>

#include <chrono>
#include <stdexcept>

#include "counted_calls.hpp"
#include "host/catalog_file.hpp"
#include "host/format_line.hpp"
#include "host/language_lookup.hpp"
#include "host/phrase_context.hpp"
#include "host/printable_text.hpp"
#include "host/sys/log_line.hpp"
#include "host/sys/space_probe.hpp"
#include "host/sys/storage.hpp"
#include "host/sys/sys_objects.hpp"
#include "platform/fixture_machine.hpp"

using namespace QuilloHost;
using namespace QuilloServer;

namespace {

void Expect(bool holds, char const* rule) {
    if (!holds) {
        throw std::runtime_error(std::string("linear_time_host: ") + rule);
    }
}

FixtureMachine const& Machine() {
    static FixtureMachine const machine;
    return machine;
}

void CountTexts() {
    CountPatterns(
        "LookUpLanguage",
        [](std::string const& text) {
            LookUpLanguage(text, {"ar-eg", "de-de", "en-us"}, "en-us");
        },
        {"de-", "aa-", "a-", "a", "-", ",", "fr,", "*,", ";", "fr;q=0.1,", "de;q=0,", " "});
    CountPatterns("FormatLine",
                  [](std::string const& text) { FormatLine(text, {"value"}, "default"); },
                  {"a", "1", "%", "%1", "%1 ", "%01"});
    CountPatterns("SplitAttributes", [](std::string const& text) { SplitAttributes(text); },
                  {" ", "a", "mtu "});
    CountPatterns("AppendPrintable",
                  [](std::string const& text) {
                      std::string line;
                      AppendPrintable(line, text);
                  },
                  {"a", "\\", "\x01"});
    CountPatterns("InContext", [](std::string const& text) { InContext("both", text); },
                  {"a", "'", "\xE2\x80\xA8"});
}

// `size` bytes of a catalog whose phrases are all the same text; behind them a hash table.
std::string Catalog(std::size_t size) {
    auto const count = static_cast<unsigned>((size - 32) / 24);
    std::string catalog;
    auto const append = [&](unsigned word) {
        for (unsigned i = 0; i < 32; i += 8) {
            catalog += static_cast<char>(word >> i & 0xFF);
        }
    };
    for (unsigned const word :
         {0x950412deU, 0U, count, 28U, 28 + 8 * count, 2 * count, 28 + 16 * count}) {
        append(word);
    }
    for (unsigned i = 0; i < 2 * count; ++i) {
        append(0);
        append(static_cast<unsigned>(size) - 1);
    }
    for (unsigned i = 0; i < 2 * count; ++i) {
        append(i % (count + 1));
    }
    catalog.resize(size);
    return catalog;
}

void CountLog() {
    static std::string const line =
        "2024-05-01T12:30:05.123+02:00 [4711] info src/text/filter.cpp:31: Filter: bad byte\n";
    CountPatterns("ParseLogLine", [](std::string const& text) { ParseLogLine(text); },
                  {"a", " ", ":", ": ", "\xC3\xA4"});
    CountPatterns("FindInLog",
                  [](std::string const& text) {
                      Machine().Write("proc/self/fd/2", text);
                      Expect(FindInLog("error end not there").has_value(), "the log is read");
                  },
                  {"a", "\n", "a\n", " ", line});
    // What is sought is long too.
    CountPatterns(
        "HoldsText",
        [](std::string const& text) { HoldsText(text, text.substr(0, text.size() / 2) + "!"); },
        {"a", "ab", "A"});
    CountPatterns("HoldsText in short lines",
                  [](std::string const& text) {
                      std::string const sought = text + "!";
                      for (std::size_t at = 0; at < text.size(); at += 64) {
                          HoldsText(std::string_view(text).substr(at, 64), sought);
                      }
                  },
                  {"a"});
}

std::optional<Space> Tell(std::string const&) noexcept {
    return Space{3, 2, 1};
}

// Shows a file system at least for each `bytes` of the text.
void CountMounts(std::string const& name, MakeText const& makeText, std::size_t bytes) {
    CountCalls(
        "ReadStorage, " + name,
        [=](std::string const& text) {
            Machine().Write("proc/self/mountinfo", text);
            SpaceProbe probe(Tell, std::chrono::hours(1));
            auto const table = ReadStorage(probe);
            Expect(table && table->records.size() * bytes >= text.size(), "the mounts are shown");
        },
        makeText);
}

void CountMachine() {
    CountPatterns("ReadMemory",
                  [](std::string const& text) {
                      Machine().Write("proc/meminfo", text);
                      Expect(ReadMemory().has_value(), "the memory is read");
                  },
                  {"a", "\n", " ", "a ", "a\n", "a 1 kB\n"});
    CountPatterns("ReadHost",
                  [](std::string const& text) {
                      Machine().Write("proc/uptime", text);
                      Machine().Write("proc/loadavg", text);
                      Expect(ReadHost().has_value(), "the host is read");
                  },
                  {"a", ".", " ", "1.5 "});
    CountPatterns("ReadProcesses",
                  [](std::string const& text) {
                      Machine().Write("proc/1/stat", "1 (" + text);
                      Expect(ReadProcesses().has_value(), "the processes are read");
                  },
                  {"a", "(", ")", ") ", " ", ") a "});
    CountMounts("many places", Numbered("1 0 8:1 / /# a - t d\n"), 32768);
    CountMounts("many devices", Numbered("1 0 8:# / /# a - t d\n"), 32);
    CountPatterns("ReadStorage",
                  [](std::string const& text) {
                      Machine().Write("proc/self/mountinfo", text);
                      SpaceProbe probe(Tell, std::chrono::hours(1));
                      Expect(ReadStorage(probe).has_value(), "the mounts are read");
                  },
                  {"\n", " ", " -", "\\040", "1 0 8:1 / /a a - t d\n"});
}

// A head has at most 16 KiB, so its fields have half of the text.
void CountHead() {
    CountPatterns("JudgeHead",
                  [](std::string const& text) {
                      std::string const cookie = text.substr(0, text.size() / 2 - text.size() / 64);
                      HeadJudgement const judged =
                          JudgeHead("GET / HTTP/1.1\r\nHost: a\r\nCookie: " + cookie + "\r\n\r\n");
                      Expect(judged.size != 0, "the head is there as a whole");
                  },
                  {"a", "=", "\"", "=\"", "=\"a\";", ";", " ", "a=b; "});
    CountPatterns("JudgeHead, unfinished", [](std::string const& text) { JudgeHead(text); },
                  {"a", "\n", "\r\n", "\r\n\r", "GET / HTTP/1.1\r\n"});
}

void CountRequest() {
    CountPatterns("ReadForm", [](std::string const& text) { ReadForm(text); },
                  {"&", "=", "a=&", "%", "+", "a=1&b=2&"});
    CountCalls(
        "ReadForm, 0=1&1=1&", [](std::string const& text) { ReadForm(text); }, Numbered("#=1&"));
    CountPatterns("QueryArgument", [](std::string const& text) { QueryArgument(text, "a"); },
                  {"&", "=", "a=", "a=1&", "a=%"});
    CountPatterns("IsTagNamed", [](std::string const& text) { IsTagNamed(text, "\"tag\""); },
                  {",", " ", "W/", "\"a\", ", "a"});
    CountPatterns("TakeTarget",
                  [](std::string const& text) {
                      Incoming incoming;
                      TakeTarget(incoming, "http://" + text);
                  },
                  {"a", "/", "?"});
    CountPatterns("IsForm", [](std::string const& text) { IsForm(text); }, {"a", ";", " "});
    CountPatterns("HostName", [](std::string const& text) { HostName(text); },
                  {"a", ".", ":", "]", "1"});
    CountPatterns("GivenHostName", [](std::string const& text) { GivenHostName(text); },
                  {"a", ":", "[", "."});
    CountPatterns("IsSameOrigin",
                  [](std::string const& text) { IsSameOrigin("http://" + text, text); },
                  {"a", ":"});
    CountPatterns("ParseEndpoint",
                  [](std::string const& text) {
                      Expect(ParseEndpoint("[:" + text + "]:80").port == "80",
                             "the endpoint is read");
                  },
                  {"a", ":"});
    CountPatterns(
        "IsKnown",
        [](std::string const& text) {
            Expect(!Sessions("secret").IsKnown({{"quillo_session", text}}), "the session is read");
        },
        {"a", ".", "a."});
}

void CountPolicy() {
    std::string const start = "<script type=\"text/javascript\">";
    CountPatterns("SecurityPolicy", [](std::string const& text) { SecurityPolicy(text); },
                  {"a", "<", start, "<style>", "<style></style>", "</head>"});
    CountCalls(
        "SecurityPolicy, scripts", [](std::string const& text) { SecurityPolicy(text); },
        Numbered(start + "document.f.e#.focus();</script>"));
    CountCalls(
        "SecurityPolicy, styles", [](std::string const& text) { SecurityPolicy(text); },
        Numbered("<style>#</style>"));
}

}  // namespace

int main() {
    CountTexts();
    CountCalls(
        "DamageOf, catalog",
        [](std::string const& text) { Expect(DamageOf(text) == nullptr, "the catalog is whole"); },
        Catalog);
    CountLog();
    CountMachine();
    CountHead();
    CountRequest();
    CountPolicy();
    return 0;
}
