// serial_dialog.h - what a serial channel needs of its configuration dialog
#pragma once

#include "mivora/types.h"
#include "serial/serial_settings.h"

#include <cstdint>
#include <vector>

namespace pyxen {

/// What the dialog shows, and the user's choice afterwards.
struct SerialDialogData {
    std::vector<SerialPortEntry> ports;
    std::int32_t portIndex = -1; ///< into `ports`, -1 for none
    SerialSettings settings;     ///< the dialog leaves the port name unchanged
};

/// Runs the configuration dialog. On MV_DLG_OK `data` holds the user's choice, else it is
/// unchanged. One implementation is linked per platform; without windows it returns MV_DLG_CANCEL.
MV_DLG_EXITCODE RunSerialDialog(MV_WINDOW parent, SerialDialogData& data);

} // namespace pyxen
