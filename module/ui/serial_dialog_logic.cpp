// serial_dialog_logic.cpp - what the serial configuration dialog decides without its window
#include "ui/serial_dialog_logic.h"

#include <algorithm>

namespace pyxen {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

} // namespace

const SerialPortEntry* SelectedSerialPort(const SerialDialogData& data) {
    const bool known =
        data.portIndex >= 0 && static_cast<std::size_t>(data.portIndex) < data.ports.size();
    return known ? &data.ports[static_cast<std::size_t>(data.portIndex)] : nullptr;
}

std::vector<std::uint32_t> OfferedSerialChoices(const SerialDialogData& data, SerialField field) {
    const SerialPortEntry* const port = SelectedSerialPort(data);
    return port ? AllowedSerialChoices(field, port->capability) : std::vector<std::uint32_t>();
}

std::uint32_t& SerialSettingOf(SerialSettings& settings, SerialField field) {
    switch (field) {
    case SerialField::kParity:
        return settings.parityIndex;
    case SerialField::kByteSize:
        return settings.byteSizeIndex;
    case SerialField::kStopBits:
        return settings.stopBitsIndex;
    case SerialField::kBaud:
        break;
    }
    return settings.baudIndex;
}

std::string FormatDelay(std::uint32_t milliseconds) {
    return std::to_string(milliseconds);
}

std::optional<std::uint32_t> ParseDelay(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || !IsDigit(text.front())) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
        value = value * 10 + static_cast<std::uint32_t>(text.front() - '0');
    }
    return negative ? 0u - value : value;
}

} // namespace pyxen
