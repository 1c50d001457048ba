// serial_dialog_logic.h - what the serial configuration dialog decides without its window
#pragma once

#include "serial/serial_dialog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pyxen {

/// The entry of the selected port; null when the index is outside the list.
const SerialPortEntry* SelectedSerialPort(const SerialDialogData& data);
/// The indices of the choices that the selected port allows, ascending; none without a port.
std::vector<std::uint32_t> OfferedSerialChoices(const SerialDialogData& data, SerialField field);
/// The setting of that field.
std::uint32_t& SerialSettingOf(SerialSettings& settings, SerialField field);

/// As "%u" writes it.
std::string FormatDelay(std::uint32_t milliseconds);
/// As "%u" reads it: blanks, a sign and digits; the rest is ignored, and a number that does not fit
/// wraps around. Empty when there is no number.
std::optional<std::uint32_t> ParseDelay(std::string_view text);

} // namespace pyxen
