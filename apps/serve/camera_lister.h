// camera_lister.h - which cameras are there, while one of them is open
#pragma once

#include "apps/common/known_camera.h"
#include "apps/common/service_client.h"

#include <memory>
#include <vector>

class CMivoraGrabber;
class IGrabberMaker;

/// A grabber of its own that opens nothing: renewing the list of one closes its camera. One thread.
class CameraLister {
public:
    explicit CameraLister(IGrabberMaker& grabberMaker);
    ~CameraLister();
    CameraLister(const CameraLister&) = delete;
    CameraLister& operator=(const CameraLister&) = delete;

    /// The present list. Throws CommandFailure.
    std::vector<KnownCamera> List();

private:
    IGrabberMaker& maker;
    CMivoraGrabber* const grabber;
    std::unique_ptr<ServiceClient> services; // null when the module has none
};
