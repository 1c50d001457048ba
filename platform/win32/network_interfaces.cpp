// network_interfaces.cpp - the network interfaces of this machine
#include "platform/network_interfaces.h"

// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <iphlpapi.h>
// clang-format on

#include <cstddef>
#include <cstring>
#include <vector>

namespace platform {

namespace {

constexpr ULONG kAdapterFlags =
    GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
constexpr int kListAttempts = 4; // the list may grow between asking for its size and for itself

std::vector<std::byte> ReadAdapters() {
    ULONG size = 16 * 1024;
    for (int attempt = 0; attempt < kListAttempts; ++attempt) {
        std::vector<std::byte> memory(size);
        const ULONG result =
            GetAdaptersAddresses(AF_INET, kAdapterFlags, nullptr,
                                 reinterpret_cast<IP_ADAPTER_ADDRESSES*>(memory.data()), &size);
        if (result == ERROR_SUCCESS) {
            return memory;
        }
        if (result != ERROR_BUFFER_OVERFLOW) {
            break;
        }
    }
    return {};
}

std::string Utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(size > 0 ? static_cast<std::size_t>(size) : 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();
    return result;
}

std::uint32_t AddressNumber(const SOCKET_ADDRESS& address) {
    if (!address.lpSockaddr || address.lpSockaddr->sa_family != AF_INET) {
        return 0;
    }
    sockaddr_in ip{};
    std::memcpy(&ip, address.lpSockaddr, sizeof ip);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&ip.sin_addr);
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | bytes[3];
}

std::uint32_t MaskOf(unsigned prefix) {
    return prefix == 0 || prefix > 32 ? 0 : 0xFFFFFFFFu << (32 - prefix);
}

} // namespace

std::vector<NetworkInterface> ListNetworkInterfaces() {
    std::vector<NetworkInterface> interfaces;
    const std::vector<std::byte> memory = ReadAdapters();
    const auto* adapter =
        memory.empty() ? nullptr : reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(memory.data());
    for (; adapter; adapter = adapter->Next) {
        NetworkInterface found;
        found.name = Utf8(adapter->FriendlyName);
        found.mtu = adapter->Mtu == 0xFFFFFFFFu ? 0 : adapter->Mtu;
        found.isUp = adapter->OperStatus == IfOperStatusUp;
        found.isLoopback = adapter->IfType == IF_TYPE_SOFTWARE_LOOPBACK;
        bool hasAddress = false;
        for (const auto* unicast = adapter->FirstUnicastAddress; unicast; unicast = unicast->Next) {
            const std::uint32_t address = AddressNumber(unicast->Address);
            if (address != 0) {
                hasAddress = true;
                found.address = address;
                found.netmask = MaskOf(unicast->OnLinkPrefixLength);
                interfaces.push_back(found);
            }
        }
        if (!hasAddress) {
            interfaces.push_back(found);
        }
    }
    return interfaces;
}

} // namespace platform
