// open_camera.h - the modules of one open camera
#pragma once

#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/change_watch.h"
#include "pxnc/genicam/chunk_access.h"
#include "pxnc/genicam/frame_stream.h"
#include "pxnc/skeleton/backend.h"

#include <memory>
#include <string>

namespace genicam {

/// How the local device module identifies the camera.
struct CameraIdentity {
    std::string id;
    std::string vendor;
    std::string model;
    std::string serial;
    std::string displayName;
};

/// The handles of an open camera and what they refer to.
struct OpenedCamera {
    PxnHandle camera = nullptr;
    PxnHandle localDevice = nullptr;
    PxnHandle stream = nullptr;
    std::shared_ptr<CameraDevice> device;
    std::shared_ptr<FrameStream> frames;
    std::shared_ptr<ChunkReaders> chunkReaders;
};

/// Makes the camera, local device and stream modules and adds their handles.
OpenedCamera AddCameraModules(skeleton::Backend& backend, ChangeWatch& watch,
                              const std::shared_ptr<CameraDevice>& device,
                              const std::shared_ptr<FrameStream>& frames,
                              const CameraIdentity& identity);

} // namespace genicam
