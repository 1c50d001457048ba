// serial_dialog.h - the one way from a serial channel to its configuration dialog
#pragma once

#include "mivora/types.h"
#include "serial/serial_settings.h"

#include <cstdint>
#include <vector>

/// What the dialog shows, and what the user made of it.
struct SerialDialogData {
    std::vector<SerialPortEntry> ports;
    std::int32_t portIndex = -1; ///< into `ports`, -1 for none
    SerialSettings settings;     ///< not the dialog's: the port name, which stays as it is
};

/// Runs the configuration dialog. On MV_DLG_OK `data` holds the user's choice, else it is
/// unchanged. One implementation is linked per platform; where there are no windows it answers
/// MV_DLG_CANCEL.
MV_DLG_EXITCODE RunSerialDialog(MV_WINDOW parent, SerialDialogData& data);
