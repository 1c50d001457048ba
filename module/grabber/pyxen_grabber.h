// pyxen_grabber.h - the slots that this module adds to the grabber interface
#pragma once

#include "mivora/grabber.h"
#include "pxnc.h"

class FeatureCache;

/// Slots 104 to 114, behind the host's. Pure, so that the layout can be checked for every compiler
/// without the module's insides.
class CPyxenGrabber : public CMivoraGrabber {
public:
    /// Entry of the SDK's discovery and invalidation events, on an SDK thread.
    /* slot 104 */ virtual void InvalidationCallback(PxnHandle handle, const char* featureName) = 0;
    /// Entry of the SDK's frames, on an SDK thread.
    /* slot 105 */ virtual void FrameCallback(PxnFrame* frame) = 0;
    /// The system cache is not counted.
    /* slot 106 */ virtual uint32_t GetNumFeatureCaches() = 0;
    /// 0 "Interface", 1 "Transportlayer", 2 "Localdevice", 3 "Camera", 4 "Stream0"; null past it.
    /* slot 107 */ virtual FeatureCache* GetFeatureCache(uint32_t index) = 0;
    /* slot 108 */ virtual FeatureCache* GetFeatureCacheByName(const char* name) = 0;
    /* slot 109 */ virtual FeatureCache* GetFeatureCacheByHandle(PxnHandle handle) = 0;
    /* slot 110 */ virtual void InitMembers() = 0;
    /// In units of the time base, fresh from the camera; false when it cannot be read.
    /* slot 111 */ virtual bool GetExposureTime(uint32_t* value) = 0;
    /* slot 112 */ virtual bool GetFrameInterval(uint32_t* value) = 0;
    /* slot 113 */ virtual void OnTimingFeatureChanged(PxnHandle module,
                                                       const char* featureName) = 0;
    /// Called when a change of the buffer layout begins (false) and when it has ended (true).
    /* slot 114 */ virtual bool NotifyBufferImpact(bool finished) = 0;

protected:
    using CMivoraGrabber::CMivoraGrabber;
};
