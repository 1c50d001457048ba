// serial_settings.cpp - ports and line settings of a camera's serial ports
#include "serial/serial_settings.h"

#include "platform/text.h"

#include <algorithm>

namespace pyxen {

namespace {

constexpr SerialPortRow kPorts[] = {
    {0, "PYXENSERIALPORT0", "Serial port 0", 0x16000},
    {1, "PYXENSERIALPORT1", "Serial port 1", 0x60000},
    {2, "PYXENSERIALPORT2", "Serial port 2", 0x61000},
    {3, "PYXENSERIALPORT3", "Serial port 3", 0x62000},
    {4, "PYXENSERIALPORT4", "Serial port 4", 0x63000},
};

struct Choice {
    const char* text;
    const char* label;
};

constexpr Choice kBaudRates[] = {
    {"300", "300 Baud"},       {"600", "600 Baud"},       {"1200", "1200 Baud"},
    {"2400", "2400 Baud"},     {"4800", "4800 Baud"},     {"9600", "9600 Baud"},
    {"19200", "19200 Baud"},   {"38400", "38400 Baud"},   {"57600", "57600 Baud"},
    {"115200", "115200 Baud"}, {"230400", "230400 Baud"},
};
constexpr Choice kParities[] = {
    {"No", "No Parity"},
    {"Odd", "Odd Parity"},
    {"Even", "Even Parity"},
};
constexpr Choice kByteSizes[] = {
    {"5", "5 Bit"},
    {"6", "6 Bit"},
    {"7", "7 Bit"},
    {"8", "8 Bit"},
};
constexpr Choice kStopBits[] = {
    {"1", "1 Stopbit"},
    {"1.5", "1.5 Stopbits"},
    {"2", "2 Stopbits"},
};

struct Table {
    std::span<const Choice> choices;
    std::uint32_t unknownIndex; // what a text that matches no row reads back as
    const char* unknownText;    // what an index past the table prints as
    unsigned modeShift;         // the field of the mode register
    std::uint32_t modeMask;
    unsigned capabilityShift; // the field of the capability word
    std::uint32_t capabilityMask;
};

const Table& TableOf(SerialField field) {
    static constexpr Table kTables[] = {
        {kBaudRates, kUnknownBaud, "0", 0, 0xFF, 0, 0xFFFF},
        {kParities, 0, "No", 8, 0x3, 16, 0xF},
        {kByteSizes, 3, "8", 10, 0x3, 20, 0xF},
        {kStopBits, 0, "1", 12, 0x3, 24, 0xFF},
    };
    return kTables[static_cast<std::size_t>(field)];
}

std::uint32_t ModeBits(SerialField field, std::uint32_t index) {
    const Table& table = TableOf(field);
    return (index & table.modeMask) << table.modeShift;
}

} // namespace

std::span<const SerialPortRow> SerialPortTable() {
    return kPorts;
}

const SerialPortRow* FindSerialPortById(std::int32_t id) {
    const auto* found = std::find_if(std::begin(kPorts), std::end(kPorts),
                                     [id](const SerialPortRow& row) { return row.id == id; });
    return found == std::end(kPorts) ? nullptr : found;
}

const SerialPortRow* FindSerialPortByName(const char* iniName) {
    if (!iniName) {
        return nullptr;
    }
    const auto* found =
        std::find_if(std::begin(kPorts), std::end(kPorts), [iniName](const SerialPortRow& row) {
            return platform::CompareNoCase(row.iniName, iniName) == 0;
        });
    return found == std::end(kPorts) ? nullptr : found;
}

const char* SerialText(SerialField field, std::uint32_t index) {
    const Table& table = TableOf(field);
    return index < table.choices.size() ? table.choices[index].text : table.unknownText;
}

std::uint32_t SerialIndex(SerialField field, const char* text) {
    const Table& table = TableOf(field);
    for (std::uint32_t index = 0; index < table.choices.size(); ++index) {
        if (platform::CompareNoCase(table.choices[index].text, text) == 0) {
            return index;
        }
    }
    return table.unknownIndex;
}

std::uint32_t SerialChoiceCount(SerialField field) {
    return static_cast<std::uint32_t>(TableOf(field).choices.size());
}

const char* SerialChoiceLabel(SerialField field, std::uint32_t index) {
    const Table& table = TableOf(field);
    return index < table.choices.size() ? table.choices[index].label : nullptr;
}

bool IsSerialChoiceAllowed(SerialField field, std::uint32_t index, std::uint32_t capability) {
    const Table& table = TableOf(field);
    const std::uint32_t allowed = (capability >> table.capabilityShift) & table.capabilityMask;
    return index < table.choices.size() && (allowed >> index & 1u) != 0;
}

std::vector<std::uint32_t> AllowedSerialChoices(SerialField field, std::uint32_t capability) {
    std::vector<std::uint32_t> allowed;
    for (std::uint32_t index = 0; index < SerialChoiceCount(field); ++index) {
        if (IsSerialChoiceAllowed(field, index, capability)) {
            allowed.push_back(index);
        }
    }
    return allowed;
}

std::uint32_t SerialModeWord(const SerialSettings& settings) {
    return ModeBits(SerialField::kBaud, settings.baudIndex) |
           ModeBits(SerialField::kParity, settings.parityIndex) |
           ModeBits(SerialField::kByteSize, settings.byteSizeIndex) |
           ModeBits(SerialField::kStopBits, settings.stopBitsIndex);
}

} // namespace pyxen
