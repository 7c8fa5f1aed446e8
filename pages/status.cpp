// The status page: this machine at a glance. A script asks for the values alone, the argument
// "part=values", again and again (static/live.js); without it a link shows them anew.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"
#include "static_files.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

char const path[] = "/status";

Element MakeHost(Request& request) {
    return FactTable(request, "Device", "host",
                     {{"hostname", "Name", nullptr},
                      {"kernel", "Kernel", nullptr},
                      {"architecture", "Architecture", nullptr},
                      {"uptime", "Running for", Duration},
                      {"load1", "Load, 1 minute", nullptr},
                      {"load5", "Load, 5 minutes", nullptr},
                      {"load15", "Load, 15 minutes", nullptr},
                      {"processes", "Processes", nullptr}});
}

Element MakeMemory(Request& request) {
    return FactTable(request, "Memory", "memory",
                     {{"total", "Total", Bytes},
                      {"available", "Available", Bytes},
                      {"swap_total", "Swap, total", Bytes},
                      {"swap_free", "Swap, free", Bytes}});
}

Element MakeInterfaces(Request& request) {
    return RecordTable(request, "Network interfaces", "interfaces",
                       {{"name", "Name", nullptr},
                        {"state", "State", InterfaceState, true},
                        {"mac", "MAC address", nullptr},
                        {"ipv4", "IPv4", nullptr},
                        {"ipv6", "IPv6", nullptr},
                        {"rx_bytes", "Received", Bytes},
                        {"tx_bytes", "Sent", Bytes},
                        {"mtu", "MTU", nullptr}});
}

Element MakeStorage(Request& request) {
    return RecordTable(request, "Storage", "storage",
                       {{"mount", "Mounted at", nullptr},
                        {"device", "Device", nullptr},
                        {"type", "Type", nullptr},
                        {"size", "Size", Bytes},
                        {"used", "Used", Bytes},
                        {"available", "Available", Bytes}});
}

// A part whose setting cannot be had is shown: the library has reported it.
bool IsShown(char const* setting) {
    bool isShown = true;
    GetConfig(setting, isShown);
    return isShown;
}

// The values, and where they are to be had in the language they are in now.
Element MakeValues(Request& request) {
    Div values;
    values.SetAttr("id", "live");
    std::string const arguments = std::string("part=values&LANGUAGE=") + Cstr(g_language);
    values.SetAttr("data-source", SafeUrl(AppendUriArgs(path, arguments)));
    values << MakeHost(request);
    if (IsShown("show_memory")) {
        values << MakeMemory(request);
    }
    if (IsShown("show_interfaces")) {
        values << MakeInterfaces(request);
    }
    if (IsShown("show_storage")) {
        values << MakeStorage(request);
    }
    return values;
}

// The link for readers without the script, and the word of the script when it has no answer.
Element MakeRefresh(Request& request) {
    P line;
    line.SetAttr("class", "links");
    line << (A().SetAttr("id", "refresh").SetAttr("href", path) << Phrase(request, "Refresh"));
    return line << TextTag("span")
                       .SetAttr("id", "live_note")
                       .SetAttr("class", "error")
                       .SetAttr("role", "status")
                       .SetAttr("data-failed",
                                SafeAttr(Translated(request,
                                                    "The device does not answer. It is asked "
                                                    "again soon.")));
}

bool IsForValues(UriArgs const& arguments) {
    auto const part = arguments.find("part");
    return part != arguments.end() && part->second == "values";
}

void WriteStatus(Request& request, std::ostream& out) {
    Element const values = MakeValues(request);
    if (IsForValues(request.arguments)) {
        Renderer r(out);
        values.impl->Render(r, 0);
        return;
    }
    Group content;
    if (request.standsAlone) {
        content << values;
    } else {
        content << MakeRefresh(request) << values
                << Script("").SetAttr("src", liveScriptPath).SetEmptyAttr("defer");
    }
    WriteFramed(request, out, "status", content);
}

QuilloServer::Page const status("status", "Status", 1, WriteStatus);

}  // namespace
}  // namespace Pages
