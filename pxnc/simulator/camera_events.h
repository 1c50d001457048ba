// camera_events.h - what a camera reports while it works
#pragma once

#include <cstddef>
#include <cstdint>

namespace pxsim {

enum class CameraEvent : std::size_t {
    kAcquisitionStart,
    kAcquisitionEnd,
    kExposureEnd,
    kFrameEnd
};

inline constexpr const char* kCameraEventNames[] = {"AcquisitionStart", "AcquisitionEnd",
                                                    "ExposureEnd", "FrameEnd"};

} // namespace pxsim
