#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/if_link.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "host/sys/sys_objects.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/shown_table.hpp"
#include "platform/system_calls.hpp"

namespace {

using QuilloHost::ReadInterfaces;

// A list as getifaddrs makes it. Its entries stay where they are.
class InterfaceList {
public:
    void AddLink(char const* name, unsigned flags, std::vector<unsigned char> const& mac,
                 unsigned received, unsigned sent) {
        Entry& entry = Add(name, flags);
        entry.link.sll_family = AF_PACKET;
        entry.link.sll_halen = static_cast<unsigned char>(mac.size());
        std::memcpy(entry.link.sll_addr, mac.data(),
                    std::min(mac.size(), sizeof entry.link.sll_addr));
        entry.counters.rx_bytes = received;
        entry.counters.tx_bytes = sent;
        entry.node.ifa_addr = reinterpret_cast<sockaddr*>(&entry.link);
        entry.node.ifa_data = &entry.counters;
    }
    void AddIpv4(char const* label, char const* address, char const* mask) {
        Entry& entry = Add(label, IFF_UP | IFF_RUNNING);
        entry.ipv4[0].sin_family = entry.ipv4[1].sin_family = AF_INET;
        inet_pton(AF_INET, address, &entry.ipv4[0].sin_addr);
        inet_pton(AF_INET, mask, &entry.ipv4[1].sin_addr);
        entry.node.ifa_addr = reinterpret_cast<sockaddr*>(&entry.ipv4[0]);
        entry.node.ifa_netmask = reinterpret_cast<sockaddr*>(&entry.ipv4[1]);
    }
    void AddIpv6(char const* label, char const* address, char const* mask) {
        Entry& entry = Add(label, IFF_UP | IFF_RUNNING);
        entry.ipv6[0].sin6_family = entry.ipv6[1].sin6_family = AF_INET6;
        inet_pton(AF_INET6, address, &entry.ipv6[0].sin6_addr);
        inet_pton(AF_INET6, mask, &entry.ipv6[1].sin6_addr);
        entry.node.ifa_addr = reinterpret_cast<sockaddr*>(&entry.ipv6[0]);
        entry.node.ifa_netmask = reinterpret_cast<sockaddr*>(&entry.ipv6[1]);
    }
    void AddBare(char const* name) { Add(name, IFF_UP | IFF_RUNNING); }

    ifaddrs* First() { return &entries_.front().node; }

private:
    struct Entry {
        ifaddrs node;
        std::string name;
        sockaddr_ll link;
        rtnl_link_stats counters;
        sockaddr_in ipv4[2];
        sockaddr_in6 ipv6[2];
    };

    Entry& Add(char const* name, unsigned flags) {
        entries_.emplace_back();
        Entry& entry = entries_.back();
        entry.name = name;
        entry.node.ifa_name = entry.name.data();
        entry.node.ifa_flags = flags;
        if (entries_.size() > 1) {
            entries_[entries_.size() - 2].node.ifa_next = &entry.node;
        }
        return entry;
    }

    std::deque<Entry> entries_;
};

class Interfaces : public testing::Test {
protected:
    std::string Read() {
        SystemCalls::Now().interfaces = list.First();
        return Shown(ReadInterfaces());
    }

    InterfaceList list;
    FixtureMachine machine;
    ChangedSystemCalls calls;
};

std::vector<unsigned char> const mac = {0x02, 0x42, 0xac, 0x11, 0x00, 0xff};

TEST_F(Interfaces, TellWhatTheirListTellsWhereThereIsNoFolder) {
    SystemCalls::Now().indices = {{"lo", 1}, {"eth0", 7}};
    list.AddLink("eth0", IFF_UP | IFF_RUNNING, mac, 4000000000U, 5);
    list.AddLink("lo", IFF_UP, {0, 0, 0, 0, 0, 0}, 1, 2);
    EXPECT_EQ(Read(), "lo|down||||1|2|~\neth0|up|02:42:ac:11:00:ff|||4000000000|5|~\n");
}

TEST_F(Interfaces, ShowTheFirstEightBytesOfALongHardwareAddress) {
    SystemCalls::Now().indices = {{"eui64", 1}, {"ib0", 2}};
    list.AddLink("eui64", IFF_UP, {1, 2, 3, 4, 5, 6, 7, 8}, 1, 2);
    std::vector<unsigned char> const twentyBytes(20, 0xfe);
    list.AddLink("ib0", IFF_UP, twentyBytes, 3, 4);
    EXPECT_EQ(Read(),
              "eui64|down|01:02:03:04:05:06:07:08|||1|2|~\n"
              "ib0|down|fe:fe:fe:fe:fe:fe:fe:fe|||3|4|~\n");
}

TEST_F(Interfaces, TellWhatTheirFolderTells) {
    SystemCalls::Now().indices = {{"eth0", 7}};
    list.AddLink("eth0", IFF_UP | IFF_RUNNING, mac, 1, 2);
    machine.Write("sys/class/net/eth0/ifindex", "7\n");
    machine.Write("sys/class/net/eth0/operstate", "dormant\n");
    machine.Write("sys/class/net/eth0/mtu", "1500\n");
    machine.Write("sys/class/net/eth0/statistics/rx_bytes", "123456789012345\n");
    machine.Write("sys/class/net/eth0/statistics/tx_bytes", "9\n");
    EXPECT_EQ(Read(), "eth0|dormant|02:42:ac:11:00:ff|||123456789012345|9|1500\n");
    machine.Remove("sys/class/net/eth0/mtu");
    machine.Remove("sys/class/net/eth0/statistics");
    EXPECT_EQ(Read(), "eth0|dormant|02:42:ac:11:00:ff|||1|2|~\n");
}

TEST_F(Interfaces, TellNothingOfAFolderOfAnotherInterface) {
    SystemCalls::Now().indices = {{"eth0", 7}};
    list.AddLink("eth0", IFF_UP | IFF_RUNNING, mac, 1, 2);
    machine.Write("sys/class/net/eth0/ifindex", "8\n");
    machine.Write("sys/class/net/eth0/operstate", "dormant\n");
    machine.Write("sys/class/net/eth0/mtu", "1500\n");
    EXPECT_EQ(Read(), "eth0|up|02:42:ac:11:00:ff|||1|2|~\n");
}

TEST_F(Interfaces, ShowEachAddressWithItsPrefixLength) {
    SystemCalls::Now().indices = {{"eth0", 2}};
    list.AddIpv4("eth0", "192.0.2.1", "255.255.255.0");
    list.AddIpv6("eth0", "2001:db8::1", "ffff:ffff:ffff:fffe::");
    list.AddIpv4("eth0", "10.1.2.3", "255.128.0.0");
    list.AddIpv6("eth0", "fe80::1", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
    list.AddIpv4("eth0", "10.0.0.1", "0.0.0.0");
    EXPECT_EQ(Read(),
              "eth0|up||192.0.2.1/24, 10.1.2.3/9, 10.0.0.1/0|2001:db8::1/63, fe80::1/128|~|~|~\n");
}

TEST_F(Interfaces, OwnTheAddressesUnderTheirLabels) {
    SystemCalls::Now().indices = {{"eth0", 2}};
    list.AddLink("eth0", IFF_UP | IFF_RUNNING, mac, 1, 2);
    list.AddIpv4("eth0:1", "192.0.2.1", "255.255.255.255");
    EXPECT_EQ(Read(), "eth0|up|02:42:ac:11:00:ff|192.0.2.1/32||1|2|~\n");
}

TEST_F(Interfaces, AreLeftOutWhenTheyAreGone) {
    SystemCalls::Now().indices = {{"tun0", 3}};
    list.AddLink("gone", IFF_UP, mac, 1, 2);
    list.AddBare("tun0");
    EXPECT_EQ(Read(), "tun0|up||||~|~|~\n");
}

TEST_F(Interfaces, AreNotThereWhenTheSystemDoesNotTell) {
    CapturedStderr const captured;
    SystemCalls::Now().interfaces = nullptr;
    EXPECT_EQ(Shown(ReadInterfaces()), "no table\n");
    EXPECT_NE(captured.Text().find("interfaces: getifaddrs() failed - Cannot allocate memory\n"),
              std::string::npos);
}

TEST(InterfacesOfThisMachine, AreThoseThatTheKernelNumbers) {
    auto const table = *ReadInterfaces();
    struct if_nameindex* const all = if_nameindex();
    ASSERT_NE(all, nullptr);
    std::string expected;
    for (auto* entry = all; entry->if_index != 0; ++entry) {
        expected += entry->if_name + std::string(" ");
    }
    if_freenameindex(all);
    std::string names;
    for (auto const& record : table.records) {
        names += record.at(0).value() + " ";
    }
    EXPECT_EQ(names, expected);
}

TEST(InterfacesOfThisMachine, ShowTheLoopbackAddress) {
    if (if_nametoindex("lo") == 0) {
        GTEST_SKIP() << "there is no interface lo";
    }
    std::string const ipv4 = ValueIn(*ReadInterfaces(), "name", "lo", "ipv4");
    EXPECT_TRUE(ipv4.empty() || ipv4.find("127.0.0.1/8") != std::string::npos) << ipv4;
}

}  // namespace
