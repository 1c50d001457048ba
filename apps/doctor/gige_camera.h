// gige_camera.h - what a GigE Vision camera says of itself to whoever asks
#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// A GigE Vision camera that has replied to a search. Addresses are numbers: 127.0.0.1 is
/// 0x7F000001.
struct GigeCamera {
    std::string interfaceName; ///< on which it replied
    std::uint32_t interfaceAddress = 0;
    std::uint32_t interfaceNetmask = 0;
    std::uint64_t mac = 0;
    std::uint32_t address = 0;
    std::uint32_t netmask = 0;
    std::uint32_t gateway = 0;
    std::string vendor;
    std::string model;
    std::string serial;
    std::string userName;
    bool isControlled = false;    ///< a program has it
    std::uint32_t controller = 0; ///< address of that program's host; 0 if not known
    std::optional<std::uint32_t> heartbeatMs;

    bool IsInSubnet() const { return ((address ^ interfaceAddress) & interfaceNetmask) == 0; }
};
