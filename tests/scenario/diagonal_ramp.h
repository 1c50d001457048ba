// diagonal_ramp.h - the picture that cameras without a scene send
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace scenario {

/// A picture in 8 bits that brightens by one from pixel to pixel and from line to line, begins
/// again at 0 behind `levels` steps, and moves on by one step from frame to frame.
struct DiagonalRamp {
    std::size_t width;
    std::size_t height;
    unsigned levels;

    /// Pixels of `image` that are not what the camera sends when the first one is as bright as
    /// there; all of them when the image has another size.
    std::size_t CountWrongPixels(const std::string& image) const;

    /// Checks the raw files that "grab -o DIRECTORY --json" wrote: one for each frame, every pixel
    /// right, and none missed in between but those that the report tells of.
    void ExpectGrabbed(const std::string& directory, const nlohmann::json& report) const;
};

} // namespace scenario
