// network_interfaces.h - the network interfaces of this machine
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

/// An IPv4 address of a network interface. Addresses are numbers: 127.0.0.1 is 0x7F000001.
struct NetworkInterface {
    std::string name;          ///< as the system shows it to people, UTF-8
    std::uint32_t address = 0; ///< 0: the interface has none
    std::uint32_t netmask = 0;
    std::uint32_t mtu = 0; ///< largest packet in bytes; 0 when the system does not tell
    bool isUp = false;
    bool isLoopback = false;
};

/// An element for each IPv4 address of each interface, and one for each interface without any. An
/// empty list when the system does not tell. Any thread.
std::vector<NetworkInterface> ListNetworkInterfaces();

} // namespace platform
