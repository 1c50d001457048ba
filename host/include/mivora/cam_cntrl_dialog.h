// cam_cntrl_dialog.h - what a grabber asks of a camera control dialog it holds
#pragma once

#include "mivora/types.h"

/// A camera control dialog. Called on the user-interface thread unless said otherwise.
class ICamCntrlDialog {
public:
    virtual void Show() = 0;
    virtual void Hide() = 0;
    virtual bool IsVisible() const = 0;
    /// Told what changed (mask of UpdateCamCntrlDialogs). Any thread.
    virtual void Update(uint32_t mask) = 0;
    /// Sets the two acquisition marks: while set, buffer-format changes respectively changes of
    /// synchronised features are not followed. Any thread.
    virtual void SetAcquisitionMarks(bool suppressBufferFormat, bool suppressSync) = 0;
    /// The camera library goes: what the dialog holds there is given back, and it asks nothing
    /// more.
    virtual void Disconnect() {}
    virtual ~ICamCntrlDialog() = default;
};
