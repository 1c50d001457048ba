// input_features.h - what a frame grabber board has to know about the camera's images
#pragma once

#include "pxnc/simulator/module.h"

namespace pxsim {

/// One feature of every type that hosts synchronise with one of the camera's; their limits are
/// narrower than the camera's.
void AddInputFeatures(Module& module);

} // namespace pxsim
