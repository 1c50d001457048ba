// acquisition_host.h - what an acquisition needs of its grabber
#pragma once

#include "imaging/frame_pool.h"
#include "mivora/types.h"

#include <cstdint>

namespace pyxen {

/// Receives every frame by OnFrame, which the grabber passes on to Acquisition::Receive.
class IAcquisitionHost : public IFrameReceiver {
public:
    /// Hands an image over to the host's post-processing. Called without a lock, on an SDK thread
    /// or by a synchronous snap.
    virtual void HandOver(std::uint64_t index, bool isFromCallback) = 0;
    /// Decides by the active camera whether a dialog is marked from now on. By a snap or a stop.
    virtual void ChooseDialog() = 0;
    /// Sets or clears the acquisition marks of the dialog that was chosen. Any thread.
    virtual void MarkDialog(bool isChanging) = 0;
    /// Prepares the host's own buffers. Stores how many of them are wanted now.
    virtual MV_ERRCODE PrepareHostBuffers(std::uint64_t count, std::uint64_t& requested) = 0;

protected:
    ~IAcquisitionHost() = default;
};

} // namespace pyxen
