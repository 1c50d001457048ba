// network_interfaces.h - the machine's own network interfaces
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace genicam {

/// One IPv4 address of a network interface that is up. Addresses in host byte order.
struct NetworkInterface {
    std::string name;
    std::uint32_t address = 0;
    std::uint32_t mask = 0;
    /// The six bytes of the hardware address as a number; 0 when it has none.
    std::uint64_t hardwareAddress = 0;
    bool isLoopback = false;
};

std::vector<NetworkInterface> ListNetworkInterfaces();

/// The interface whose subnet holds `address` ("192.168.1.7"), the longest mask winning; null when
/// none does.
const NetworkInterface* FindInterfaceFor(const std::vector<NetworkInterface>& interfaces,
                                         const std::string& address);

/// The dotted text of an address in host byte order.
std::string ToText(std::uint32_t address);

/// True for a text that is an address of this machine's loopback network.
bool IsLoopbackAddress(const std::string& address);

} // namespace genicam
