// stream_features.h - the features of a camera's stream module
#pragma once

#include "pxnc/genicam/camera_device.h"
#include "pxnc/genicam/feature.h"
#include "pxnc/genicam/frame_stream.h"
#include "pxnc/skeleton/text_pool.h"

namespace genicam {

/// Device and frames must outlive the features.
Module::Features MakeStreamFeatures(skeleton::TextPool& texts, CameraDevice& device,
                                    FrameStream& frames);

} // namespace genicam
