// network_interfaces.cpp - the network interfaces of this machine
#include "platform/network_interfaces.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace platform {

namespace {

std::uint32_t AddressNumber(const sockaddr* address) {
    if (!address || address->sa_family != AF_INET) {
        return 0;
    }
    sockaddr_in ip{};
    std::memcpy(&ip, address, sizeof ip);
    return ntohl(ip.sin_addr.s_addr);
}

std::uint32_t MtuOf(int socketHandle, const char* name) {
    ifreq request{};
    std::strncpy(request.ifr_name, name, sizeof request.ifr_name - 1);
    return socketHandle >= 0 && ioctl(socketHandle, SIOCGIFMTU, &request) == 0
               ? static_cast<std::uint32_t>(request.ifr_mtu)
               : 0;
}

} // namespace

std::vector<NetworkInterface> ListNetworkInterfaces() {
    std::vector<NetworkInterface> interfaces;
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        return interfaces;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, &freeifaddrs);
    const int socketHandle = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const auto add = [&](const ifaddrs& entry) {
        NetworkInterface found;
        found.name = entry.ifa_name;
        found.address = AddressNumber(entry.ifa_addr);
        found.netmask = found.address == 0 ? 0 : AddressNumber(entry.ifa_netmask);
        found.mtu = MtuOf(socketHandle, entry.ifa_name);
        found.isUp = (entry.ifa_flags & IFF_UP) != 0;
        found.isLoopback = (entry.ifa_flags & IFF_LOOPBACK) != 0;
        interfaces.push_back(found);
    };
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        if (AddressNumber(entry->ifa_addr) != 0) {
            add(*entry);
        }
    }
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        const bool isKnown =
            std::any_of(interfaces.begin(), interfaces.end(),
                        [&](const auto& known) { return known.name == entry->ifa_name; });
        if (!isKnown) {
            add(*entry);
        }
    }
    if (socketHandle >= 0) {
        close(socketHandle);
    }
    return interfaces;
}

} // namespace platform
