// ip_text.h - IPv4 addresses as text
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// "192.0.2.1" of 0xC0000201.
std::string IpText(std::uint32_t address);
/// "192.0.2.1/24".
std::string SubnetText(std::uint32_t address, std::uint32_t netmask);
/// Four decimal numbers from 0 to 255, separated by points; nothing else.
std::optional<std::uint32_t> ParseIp(const std::string& text);
