// dialog_messages.h - how a host's message loop serves a grabber's modeless dialogs
//
// Windows only.
#pragma once

#include "mivora/grabber.h"

#include <afxwin.h>

/// Offers a message to the dialogs that the grabber has registered (RegisterWindowHandle). True
/// when one of them used it up; else the loop translates and dispatches it. Called by the host's
/// loop for every message, on the thread that the dialogs belong to.
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
