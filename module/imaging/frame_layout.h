// frame_layout.h - what the images of a video mode look like
#pragma once

#include "imaging/pixel_format.h"

#include <cstdint>

namespace pyxen {

/// Each question is put to the camera anew.
class IFrameLayout {
public:
    /// The camera's current pixel format, or null when it is unknown.
    virtual const PixelFormat* Format() = 0;
    /// Bytes of an image as the host sees it.
    virtual std::uint64_t ImageSize() = 0;
    /// Bytes of an image as the camera delivers it.
    virtual std::uint64_t PayloadSize() = 0;
    virtual std::uint32_t Width() = 0;
    virtual std::uint32_t Height() = 0;

protected:
    ~IFrameLayout() = default;
};

} // namespace pyxen
