// dialog_messages.h - message dispatch to a grabber's modeless dialogs
//
// Windows only.
#pragma once

#include "mivora/grabber.h"

#include <afxwin.h>

/// Offers a message to the dialogs registered with the grabber (RegisterWindowHandle). The host's
/// message loop calls it for every message, on the thread that owns the dialogs. Returns true when
/// a dialog consumed the message; otherwise the loop translates and dispatches it.
inline bool OfferMessageToDialogs(const CMivoraGrabber& grabber, MSG& message) {
    uint32_t index = 0;
    while (MV_WINDOW const dialog = grabber.GetRegisteredWindow(index)) {
        if (::IsDialogMessage(static_cast<HWND>(dialog), &message)) {
            return true;
        }
        ++index;
    }
    return false;
}
