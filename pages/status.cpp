// The status page: this machine at a glance.
#include <quillo_kit/elements.hpp>

#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"

using namespace Quillo;
using QuilloServer::Request;

namespace Pages {
namespace {

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
                        {"state", "State", nullptr},
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

void WriteStatus(Request& request, std::ostream& out) {
    QuilloKit::Group content;
    content << MakeHost(request);
    if (IsShown("show_memory")) {
        content << MakeMemory(request);
    }
    if (IsShown("show_interfaces")) {
        content << MakeInterfaces(request);
    }
    if (IsShown("show_storage")) {
        content << MakeStorage(request);
    }
    WriteFramed(request, out, "status", content);
}

QuilloServer::Page const status("status", "Status", 1, WriteStatus);

}  // namespace
}  // namespace Pages
