// frame_result.h - what a filled buffer tells about its frame
#pragma once

#include "pxnc/include/pxnc.h"

#include <arv.h>

namespace genicam {

/// Writes status, flags, identification and geometry of the filled `buffer` into the caller's
/// record; what the camera did not say is zeroed. Buffer, size and context stay as they are.
/// `payloadSize` is the bytes of a whole frame.
void WriteFrameResult(ArvBuffer* buffer, uint32_t payloadSize, PxnFrame& frame);

} // namespace genicam
