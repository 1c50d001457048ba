// frame_result.h - what was received into a frame
#pragma once

#include "pxnc.h"

#include <arv.h>

#include <cstdint>

namespace genicam {

/// Writes status, flags, identification and geometry of the filled `buffer` into the caller's
/// record; what the camera did not send is zeroed. Buffer, size and context stay as they are.
/// `payloadSize` is the bytes of a whole frame.
void WriteFrameResult(ArvBuffer* buffer, std::uint32_t payloadSize, PxnFrame& frame);

} // namespace genicam
