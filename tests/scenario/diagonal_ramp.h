// diagonal_ramp.h - the picture that cameras without a scene send
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace scenario {

/// A picture in 8 bits that brightens by one per pixel and per line, wraps to 0 after `levels`
/// steps, and moves by one step per frame.
struct DiagonalRamp {
    std::size_t width;
    std::size_t height;
    unsigned levels;

    /// Counts the pixels of `image` that differ from what the camera sends, given the brightness of
    /// the first one; counts all pixels if the size differs.
    std::size_t CountWrongPixels(const std::string& image) const;

    /// Checks the raw files written by "grab -o DIRECTORY --json": one for each frame that its
    /// index names, every pixel correct, and no frame missing in between except those that the
    /// index says.
    void ExpectGrabbed(const std::string& directory, const nlohmann::json& report) const;
};

} // namespace scenario
