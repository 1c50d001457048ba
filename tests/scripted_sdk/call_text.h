// call_text.h - how a call is written down
#pragma once

#include "pxnc/skeleton/entry_call.h"
#include "tests/scripted_sdk/scripted_model.h"

#include <string>

namespace scripted {

/// `PxnFeatureIntSet(camera0, "Width", 640)`. Frames are named by their index (`frame0`), places to
/// fill and callbacks only by whether they are given (`array`, `cb`), bytes are `[41 0D]`.
std::string CallText(const skeleton::EntryCall& call, Model& model);

} // namespace scripted
