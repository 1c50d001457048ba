// scripted_backend.h - the scripted SDK between the first startup and the last shutdown
#pragma once

#include "tests/scripted_sdk/scripted_frames.h"

#include <memory>
#include <vector>

namespace scripted {

/// The frames of each open camera.
std::vector<std::shared_ptr<ScriptedFrames>> OpenCameras();

} // namespace scripted
