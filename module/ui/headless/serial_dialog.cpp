// serial_dialog.cpp - the serial configuration dialog where there are no dialogs
#include "serial/serial_dialog.h"

namespace pyxen {

MV_DLG_EXITCODE RunSerialDialog(MV_WINDOW, SerialDialogData&) {
    return MV_DLG_CANCEL;
}

} // namespace pyxen
