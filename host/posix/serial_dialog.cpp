// serial_dialog.cpp - the settings dialog without a window system: always cancelled
#include "host/src/serial_dialog.h"

DialogEnd RunSerialDialog(MV_WINDOW /*parent*/, SerialSettings& /*settings*/) {
    return DialogEnd::kCancelled;
}
