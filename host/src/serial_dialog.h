// serial_dialog.h - the dialog for the settings of the host's own serial channel
#pragma once

#include "mivora/types.h"
#include "serial_settings.h"

enum class DialogEnd {
    kOk,
    kCancelled, ///< also where there are no windows
    kFailed,    ///< the system could not show it
};

/// Lets the user change `settings` in a modal dialog, on the user-interface thread. They stay as
/// they are unless it ends with OK.
DialogEnd RunSerialDialog(MV_WINDOW parent, SerialSettings& settings);
