// cam_cntrl_dialog.h - interface of the camera control dialog that a grabber holds
#pragma once

#include "mivora/types.h"

/// A camera control dialog. Called on the user-interface thread unless stated otherwise.
class ICamCntrlDialog {
public:
    /// Shows the dialog in the foreground.
    virtual void Show() = 0;
    /// Hides the dialog; its window stays.
    virtual void Hide() = 0;
    /// True while the dialog is shown.
    virtual bool IsVisible() const = 0;
    /// Notifies the dialog of a change; `mask` combines kMvUpdate... bits. Any thread.
    virtual void Update(uint32_t mask) = 0;
    /// Sets the two acquisition marks. The dialog ignores changes of the buffer format while the
    /// first one is set, and changes of synchronised features while the second one is. Any thread.
    virtual void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) = 0;
    /// Called before the camera library is unloaded: the dialog releases what it holds there and
    /// makes no further calls to the library.
    virtual void Disconnect() {}
    virtual ~ICamCntrlDialog() = default;
};
