// playback_format.h - the pixel formats in which recorded images are sent
#pragma once

#include "apps/common/host_image.h"

#include <cstdint>

namespace playback {

/// A format of the Pixel Format Naming Convention.
struct PixelFormat {
    const char* name;
    std::uint32_t code; ///< 0 for one that the convention does not have
};

/// The format whose images lie in the camera's memory as one of this layout does in the host's, so
/// that nothing is converted on its way; null when there is none.
const PixelFormat* FindPixelFormat(const ImageLayout& layout);

} // namespace playback
