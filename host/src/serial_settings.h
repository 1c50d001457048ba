// serial_settings.h - line settings of the host's own serial channel
#pragma once

#include "platform/serial_port.h"

#include <cstdint>
#include <string>

/// What the ini file keeps of a serial port, and what its dialog changes.
struct SerialSettings {
    std::string portName;
    std::uint32_t baud = 9600;
    platform::SerialParity parity = platform::SerialParity::kNone;
    std::uint32_t byteSize = 8;
    platform::SerialStopBits stopBits = platform::SerialStopBits::kOne;
};

inline constexpr std::uint32_t kFewestByteBits = 5;
inline constexpr std::uint32_t kMostByteBits = 8;

/// "No", "Odd", "Even"; anything else is read as no parity.
const char* ParityText(platform::SerialParity parity);
platform::SerialParity ParseParity(const std::string& text);
/// "1", "1.5", "2"; anything else is read as one.
const char* StopBitsText(platform::SerialStopBits stopBits);
platform::SerialStopBits ParseStopBits(const std::string& text);
/// "5" to "8"; anything else is read as 8.
std::uint32_t ParseByteSize(const std::string& text);
