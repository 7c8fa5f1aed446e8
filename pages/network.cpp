// The network page: the interfaces of this machine, seen three ways, each under a tab of its own.
// The argument "view" chooses the tab; without a known one it is the first.
#include <quillo_kit/safe.hpp>

#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"

using namespace Quillo;
using QuilloKit::SafeUrl;
using QuilloServer::Request;

namespace Pages {
namespace {

struct View {
    std::string name;
    std::string title;
    std::vector<Field> fields;
};

std::vector<View> Views() {
    return {
        {"addresses",
         "Addresses",
         {{"name", "Name", nullptr}, {"ipv4", "IPv4", nullptr}, {"ipv6", "IPv6", nullptr}}},
        {"traffic",
         "Traffic",
         {{"name", "Name", nullptr}, {"rx_bytes", "Received", Bytes}, {"tx_bytes", "Sent", Bytes}}},
        {"hardware",
         "Hardware",
         {{"name", "Name", nullptr},
          {"state", "State", InterfaceState, true},
          {"mac", "MAC address", nullptr},
          {"mtu", "MTU", nullptr}}}};
}

std::size_t ChooseView(std::vector<View> const& views, UriArgs const& arguments) {
    auto const asked = arguments.find("view");
    for (std::size_t i = 0; i < views.size(); ++i) {
        if (asked != arguments.end() && asked->second == views[i].name) {
            return i;
        }
    }
    return 0;
}

void WriteNetwork(Request& request, std::ostream& out) {
    std::vector<View> const views = Views();
    std::size_t const current = ChooseView(views, request.arguments);
    std::vector<Slot> tabs;
    for (std::size_t i = 0; i < views.size(); ++i) {
        tabs.push_back({Translated(request, views[i].title),
                        SafeUrl(AppendUriArgs("/network", "view=" + views[i].name)), i == current,
                        false});
    }
    View const& view = views[current];
    WriteFramed(
        request, out, "network",
        MakeTabs(tabs, RecordTable(request, "Network interfaces", "interfaces", view.fields)));
}

QuilloServer::Page const network("network", "Network", 2, WriteNetwork);

}  // namespace
}  // namespace Pages
