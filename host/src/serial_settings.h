// serial_settings.h - line settings of the host's serial channel
#pragma once

#include "platform/serial_port.h"

#include <cstdint>
#include <string>

/// The settings of a serial port, as saved in the ini file and edited in the dialog.
struct SerialSettings {
    std::string portName;
    std::uint32_t baud = 9600; ///< bits per second
    platform::SerialParity parity = platform::SerialParity::kNone;
    std::uint32_t byteSize = 8; ///< data bits, kMinByteSize to kMaxByteSize
    platform::SerialStopBits stopBits = platform::SerialStopBits::kOne;
};

inline constexpr std::uint32_t kMinByteSize = 5;
inline constexpr std::uint32_t kMaxByteSize = 8;

/// "No", "Odd", "Even"; any other text is parsed as no parity.
const char* ParityText(platform::SerialParity parity);
platform::SerialParity ParseParity(const std::string& text);
/// "1", "1.5", "2"; any other text is parsed as one stop bit.
const char* StopBitsText(platform::SerialStopBits stopBits);
platform::SerialStopBits ParseStopBits(const std::string& text);
/// "5" to "8"; any other text is parsed as 8.
std::uint32_t ParseByteSize(const std::string& text);
