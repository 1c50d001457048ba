// default_model.h - what the scripted SDK has when a test begins
#pragma once

#include "tests/scripted_sdk/scripted_model.h"

namespace scripted {

/// One GigE camera of 640 x 480 with its five modules, and the system.
Model DefaultModel();

} // namespace scripted
