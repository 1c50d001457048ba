// ip_text.cpp - IPv4 addresses as text
#include "apps/doctor/ip_text.h"

#include <bit>
#include <charconv>
#include <system_error>

std::string IpText(std::uint32_t address) {
    return std::to_string(address >> 24) + "." + std::to_string(address >> 16 & 0xFF) + "." +
           std::to_string(address >> 8 & 0xFF) + "." + std::to_string(address & 0xFF);
}

std::string SubnetText(std::uint32_t address, std::uint32_t netmask) {
    return IpText(address) + "/" + std::to_string(std::popcount(netmask));
}

std::optional<std::uint32_t> ParseIp(const std::string& text) {
    std::uint32_t address = 0;
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    for (int part = 0; part < 4; ++part) {
        std::uint8_t number = 0;
        const auto result = std::from_chars(at, end, number);
        const bool isLast = part == 3;
        if (result.ec != std::errc() || (result.ptr == end) != isLast ||
            (!isLast && *result.ptr != '.')) {
            return std::nullopt;
        }
        address = address << 8 | number;
        at = result.ptr + 1;
    }
    return address;
}
