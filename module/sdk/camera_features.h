// camera_features.h - the open camera for those who read and write its features
#pragma once

#include "pxnc.h"
#include "sdk/logger.h"

class CPyxenAPIAccess;

namespace pyxen {

/// The open camera and the way to its features.
class ICameraFeatures {
public:
    /// Its entries may be called while a camera is open; see CPyxenAPIAccess for the threads.
    virtual CPyxenAPIAccess& Api() = 0;
    /// Null while no camera is open. Any thread.
    virtual PxnHandle CameraHandle() const = 0;
    virtual Logger Log() const = 0;

protected:
    ~ICameraFeatures() = default;
};

} // namespace pyxen
