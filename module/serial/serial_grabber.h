// serial_grabber.h - what a serial channel needs of the grabber
#pragma once

#include "pxnc.h"

class CPyxenAPIAccess;

namespace pyxen {

/// The grabber as its serial channels see it. Called under the port mutex that the channel was
/// given, from any thread.
class ISerialGrabber {
public:
    /// The open camera's handle, or null. It may become null at any time; as long as it is not
    /// null, and until the caller releases the port mutex, the SDK stays loaded.
    virtual PxnHandle CameraHandle() const = 0;
    /// The SDK's entries; valid while a camera is open.
    virtual CPyxenAPIAccess& Api() = 0;

protected:
    ~ISerialGrabber() = default;
};

} // namespace pyxen
