// service_grabber.h - what services need of their grabber
#pragma once

#include "sdk/logger.h"

class CMivoraCamera;
class CPyxenAPIAccess;
class FeatureCache;
class FeatureSyncher;

namespace pyxen {

class Acquisition;
class IFeatureCaches;

/// The grabber as its services see it. All but the first three under the service lock.
class IServiceGrabber {
public:
    /// Whether the calling thread is inside a callback that the SDK, or a snap, waits for.
    virtual bool IsInsideCallback() const = 0;
    virtual Logger Log() const = 0;
    virtual Acquisition& Frames() = 0;

    virtual bool IsInitialized() const = 0;
    virtual bool HasOpenCamera() const = 0;
    virtual CPyxenAPIAccess& Api() = 0;
    virtual FeatureCache& SystemCache() = 0;
    /// The modules of the open camera.
    virtual IFeatureCaches& CameraModules() = 0;
    virtual const FeatureSyncher& SyncRules() const = 0;
    /// The first node of the camera list, or null.
    virtual CMivoraCamera* FirstListedCamera() = 0;

protected:
    ~IServiceGrabber() = default;
};

} // namespace pyxen
