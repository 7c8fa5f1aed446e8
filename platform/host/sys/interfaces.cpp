// The object "interfaces": a record a network interface, in the kernel's order.
//
//     name                  as ip(8) shows it
//     state                 "up", "down", "unknown", ... (RFC 2863), from /sys/class/net/NAME
//     mac                   its hardware address; empty when it has none
//     ipv4, ipv6            its addresses with their prefix lengths, ", " between them
//     rx_bytes, tx_bytes    bytes received and sent since it came up
//     mtu                   bytes
//
// Names and addresses come from getifaddrs(3), the rest from /sys, which a container may lack: the
// state is then told from the interface's flags, the counters come with the addresses, and the MTU
// cannot be had. So it is where /sys shows another network namespace, whose interface of that name
// has another index.
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if_link.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "host/contract.hpp"
#include "host/sys/roots.hpp"
#include "host/sys/sys_objects.hpp"
#include "host/sys/text_file.hpp"

namespace QuilloHost {

namespace {

struct Interface {
    std::string name;
    bool isRunning = false;
    std::string mac;
    std::string ipv4;
    std::string ipv6;
    Value rxBytes;
    Value txBytes;
};

// By the kernel's index.
typedef std::map<unsigned, Interface> Interfaces;

// How many bits of a netmask are set.
int PrefixLength(unsigned char const* mask, std::size_t size) {
    int length = 0;
    for (std::size_t i = 0; i < size; ++i) {
        for (unsigned bits = mask[i]; bits != 0; bits &= bits - 1) {
            ++length;
        }
    }
    return length;
}

// A socket address is handed out as one of another type: its bytes are copied into its own.
template <class Address>
Address As(sockaddr const* address) {
    Address copy = {};
    if (address != nullptr) {
        std::memcpy(&copy, address, sizeof copy);
    }
    return copy;
}

template <class Address>
void AppendAddress(int family, Address const& address, Address const& mask, std::string& list) {
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(family, &address, text, sizeof text);
    unsigned char maskBytes[sizeof mask];
    std::memcpy(maskBytes, &mask, sizeof mask);
    list += (list.empty() ? "" : ", ") + std::string(text) + "/" +
            std::to_string(PrefixLength(maskBytes, sizeof maskBytes));
}

std::string MacOf(sockaddr_ll const& link) {
    static char const digits[] = "0123456789abcdef";
    std::string mac;
    for (int i = 0; i < link.sll_halen && i < 8; ++i) {
        mac += i == 0 ? "" : ":";
        mac += digits[link.sll_addr[i] >> 4];
        mac += digits[link.sll_addr[i] & 15];
    }
    return mac.find_first_not_of("0:") == std::string::npos ? "" : mac;
}

void AddLink(ifaddrs const& entry, Interface& interface) {
    interface.mac = MacOf(As<sockaddr_ll>(entry.ifa_addr));
    if (entry.ifa_data != nullptr) {
        rtnl_link_stats counters;
        std::memcpy(&counters, entry.ifa_data, sizeof counters);
        interface.rxBytes = std::to_string(counters.rx_bytes);
        interface.txBytes = std::to_string(counters.tx_bytes);
    }
}

void AddEntry(ifaddrs const& entry, Interface& interface) {
    interface.isRunning = (entry.ifa_flags & IFF_RUNNING) != 0;
    int const family = entry.ifa_addr != nullptr ? entry.ifa_addr->sa_family : AF_UNSPEC;
    if (family == AF_INET) {
        AppendAddress(family, As<sockaddr_in>(entry.ifa_addr).sin_addr,
                      As<sockaddr_in>(entry.ifa_netmask).sin_addr, interface.ipv4);
    } else if (family == AF_INET6) {
        AppendAddress(family, As<sockaddr_in6>(entry.ifa_addr).sin6_addr,
                      As<sockaddr_in6>(entry.ifa_netmask).sin6_addr, interface.ipv6);
    } else if (family == AF_PACKET) {
        AddLink(entry, interface);
    }
}

// An address may bear a label "eth0:1": it belongs to the interface before the colon.
std::string NameOf(ifaddrs const& entry) {
    std::string const label = entry.ifa_name;
    return label.substr(0, label.find(':'));
}

Interfaces Collect(ifaddrs const* entries) {
    Interfaces interfaces;
    for (ifaddrs const* entry = entries; entry != nullptr; entry = entry->ifa_next) {
        std::string const name = NameOf(*entry);
        unsigned const index = if_nametoindex(name.c_str());
        if (index != 0) {
            interfaces[index].name = name;
            AddEntry(*entry, interfaces[index]);
        }
    }
    return interfaces;
}

// The interface's folder below /sys; nothing when it is not there, or that of another one.
std::optional<std::string> FolderOf(Interface const& interface, unsigned index) {
    std::string folder = MachineRoots().sys + "/class/net/" + interface.name + "/";
    bool const isThisOne = ReadFirstLine(folder + "ifindex") == std::to_string(index);
    return isThisOne ? std::optional<std::string>(folder) : std::nullopt;
}

Value Either(Value const& first, Value const& second) {
    return first ? first : second;
}

Record MakeRecord(Interface const& interface, unsigned index) {
    std::optional<std::string> const folder = FolderOf(interface, index);
    auto const sysValue = [&](char const* file) {
        return folder ? ReadFirstLine(*folder + file) : std::nullopt;
    };
    return {interface.name,
            Either(sysValue("operstate"), interface.isRunning ? "up" : "down"),
            interface.mac,
            interface.ipv4,
            interface.ipv6,
            Either(sysValue("statistics/rx_bytes"), interface.rxBytes),
            Either(sysValue("statistics/tx_bytes"), interface.txBytes),
            sysValue("mtu")};
}

}  // namespace

std::optional<Table> ReadInterfaces() {
    ifaddrs* entries = nullptr;
    if (getifaddrs(&entries) != 0) {
        Log_SpecEntry(logSpecError, __FILE__, __LINE__, "interfaces: getifaddrs() failed - %s",
                      std::strerror(errno));
        return std::nullopt;
    }
    std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> const owner(entries, freeifaddrs);
    Table table{{"name", "state", "mac", "ipv4", "ipv6", "rx_bytes", "tx_bytes", "mtu"}, {}};
    for (auto const& entry : Collect(entries)) {
        table.records.push_back(MakeRecord(entry.second, entry.first));
    }
    return table;
}

}  // namespace QuilloHost
