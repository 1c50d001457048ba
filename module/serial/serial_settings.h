// serial_settings.h - ports and line settings of a camera's serial ports
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace pyxen {

/// One row of the fixed port table.
struct SerialPortRow {
    std::int32_t id;
    const char* iniName;     ///< "PYXENSERIALPORT0": how the ini file names the port
    const char* displayName; ///< "Serial port 0": how the user sees it
    std::uint64_t registerBase;
};

inline constexpr std::int32_t kNoSerialPort = -1;

/// The five ports, by id.
std::span<const SerialPortRow> SerialPortTable();
/// The row of a port id, or null.
const SerialPortRow* FindSerialPortById(std::int32_t id);
/// The row with this ini name (case ignored), or null, also for a null name.
const SerialPortRow* FindSerialPortByName(const char* iniName);

/// A port that the open camera offers.
struct SerialPortEntry {
    std::int32_t id;
    const char* iniName;
    const char* displayName;
    std::uint32_t capability; ///< the line settings that it allows, see IsSerialChoiceAllowed
};

/// The line settings, each an index into its table.
enum class SerialField { kBaud, kParity, kByteSize, kStopBits };

/// What a channel is configured to; takes effect when it is opened.
struct SerialSettings {
    char portName[1024 + 1] = {}; ///< ini name of the selected port
    std::uint32_t baudIndex = 9;
    std::uint32_t parityIndex = 0;
    std::uint32_t byteSizeIndex = 3;
    std::uint32_t stopBitsIndex = 0;
    std::uint32_t intercharacterDelay = 0; ///< ms between two bytes, 0 for none
};

inline constexpr std::uint32_t kUnknownBaud = 0xFFFFFFFFu;

/// The text of an index as in the ini file. An index past the table gives "0" for the baud rate,
/// and "No", "8" and "1" for the others.
const char* SerialText(SerialField field, std::uint32_t index);
/// The index of such a text, case ignored. A text that matches no row gives kUnknownBaud, "No",
/// "8" and "1".
std::uint32_t SerialIndex(SerialField field, const char* text);

/// The number of choices of a field, and the label of one ("9600 Baud"); null past the table.
std::uint32_t SerialChoiceCount(SerialField field);
const char* SerialChoiceLabel(SerialField field, std::uint32_t index);
/// Whether a port's capability word allows a choice: bit n of bits 0 to 15 the baud index n, of
/// bits 16 to 19 the parity, of bits 20 to 23 the byte size, of bits 24 to 31 the stop bits.
bool IsSerialChoiceAllowed(SerialField field, std::uint32_t index, std::uint32_t capability);
/// The indices of the choices that a capability word allows, in ascending order.
std::vector<std::uint32_t> AllowedSerialChoices(SerialField field, std::uint32_t capability);

/// The content of a port's mode register.
std::uint32_t SerialModeWord(const SerialSettings& settings);

} // namespace pyxen
