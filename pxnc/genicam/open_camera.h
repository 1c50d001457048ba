// open_camera.h - the modules of one open camera
#pragma once

#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/chunk_access.h"
#include "pxnc/genicam/frame_stream.h"
#include "pxnc/genicam/handle_table.h"
#include "pxnc/genicam/text_pool.h"

#include <memory>
#include <string>

namespace genicam {

/// What the local device module says about the camera.
struct CameraIdentity {
    std::string id;
    std::string vendor;
    std::string model;
    std::string serial;
    std::string displayName;
};

/// The handles of an open camera and what is behind them.
struct OpenCamera {
    PxnHandle camera = nullptr;
    PxnHandle localDevice = nullptr;
    PxnHandle stream = nullptr;
    std::shared_ptr<CameraDevice> device;
    std::shared_ptr<FrameStream> frames;
    std::shared_ptr<ChunkReaders> chunkReaders;
};

/// Makes the camera, local device and stream modules and puts them into the table.
OpenCamera AddCameraModules(TextPool& texts, HandleTable& handles,
                            std::shared_ptr<CameraDevice> device, const CameraIdentity& identity,
                            bool packetResend);

} // namespace genicam
