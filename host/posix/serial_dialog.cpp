// serial_dialog.cpp - no windows, no dialog: as if cancelled
#include "host/src/serial_dialog.h"

DialogEnd RunSerialDialog(MV_WINDOW /*parent*/, SerialSettings& /*settings*/) {
    return DialogEnd::kCancelled;
}
