// network_interfaces.cpp - the machine's own network interfaces
#include "pxnc/genicam/network_interfaces.h"

#include <arpa/inet.h>
#include <cstring>
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <memory>
#include <net/if.h>
#include <netinet/in.h>

namespace genicam {
namespace {

std::uint32_t ToHostOrder(const sockaddr* address) {
    sockaddr_in inet = {};
    std::memcpy(&inet, address, sizeof inet);
    return ntohl(inet.sin_addr.s_addr);
}

std::uint64_t ToHardwareAddress(const sockaddr* address) {
    sockaddr_ll link = {};
    std::memcpy(&link, address, sizeof link);
    std::uint64_t number = 0;
    for (int i = 0; i < 6; ++i) {
        number = number << 8 | link.sll_addr[i];
    }
    return number;
}

/// The number behind a dotted text; 0 when it is none.
std::uint32_t ParseAddress(const std::string& text) {
    in_addr address = {};
    return inet_pton(AF_INET, text.c_str(), &address) == 1 ? ntohl(address.s_addr) : 0;
}

} // namespace

std::vector<NetworkInterface> ListNetworkInterfaces() {
    std::vector<NetworkInterface> interfaces;
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) {
        return interfaces;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(list, freeifaddrs);
    for (const ifaddrs* item = list; item; item = item->ifa_next) {
        if (!item->ifa_addr || item->ifa_addr->sa_family != AF_INET || !item->ifa_netmask ||
            (item->ifa_flags & IFF_UP) == 0) {
            continue;
        }
        NetworkInterface found;
        found.name = item->ifa_name;
        found.address = ToHostOrder(item->ifa_addr);
        found.mask = ToHostOrder(item->ifa_netmask);
        found.isLoopback = (item->ifa_flags & IFF_LOOPBACK) != 0;
        interfaces.push_back(found);
    }
    for (const ifaddrs* item = list; item; item = item->ifa_next) {
        if (!item->ifa_addr || item->ifa_addr->sa_family != AF_PACKET) {
            continue;
        }
        for (NetworkInterface& found : interfaces) {
            if (found.name == item->ifa_name) {
                found.hardwareAddress = ToHardwareAddress(item->ifa_addr);
            }
        }
    }
    return interfaces;
}

const NetworkInterface* FindInterfaceFor(const std::vector<NetworkInterface>& interfaces,
                                         const std::string& address) {
    const std::uint32_t wanted = ParseAddress(address);
    const NetworkInterface* best = nullptr;
    for (const NetworkInterface& candidate : interfaces) {
        if ((candidate.address & candidate.mask) == (wanted & candidate.mask) &&
            (!best || candidate.mask > best->mask)) {
            best = &candidate;
        }
    }
    return best;
}

std::string ToText(std::uint32_t address) {
    return std::to_string(address >> 24) + "." + std::to_string(address >> 16 & 0xFF) + "." +
           std::to_string(address >> 8 & 0xFF) + "." + std::to_string(address & 0xFF);
}

bool IsLoopbackAddress(const std::string& address) {
    return ParseAddress(address) >> 24 == 127;
}

} // namespace genicam
