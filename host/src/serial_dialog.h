// serial_dialog.h - the settings dialog of the host's serial channel
#pragma once

#include "mivora/types.h"
#include "serial_settings.h"

/// How the dialog ended.
enum class DialogEnd {
    kOk,
    kCancelled, ///< also without a window system
    kFailed,    ///< the dialog could not be shown
};

/// Lets the user edit `settings` in a modal dialog; they change only if it ends with kOk.
/// User-interface thread.
DialogEnd RunSerialDialog(MV_WINDOW parent, SerialSettings& settings);
