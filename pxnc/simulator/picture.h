// picture.h - a pattern rendered once and copied into every frame
#pragma once

#include "pxnc/simulator/pattern.h"
#include "pxnc/simulator/pixel_formats.h"

#include <cstdint>
#include <vector>

namespace pxsim {

/// The region, format and content of the frames of an acquisition.
struct ImageSetup {
    const PixelFormat* format = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t offsetX = 0;
    std::uint32_t offsetY = 0;
    Pattern pattern = Pattern::kGradient;
    std::uint32_t seed = 0;
    bool reverseX = false;
    std::uint32_t sensorWidth = 0; // reverseX mirrors the whole sensor

    bool operator==(const ImageSetup&) const = default;
    std::uint32_t LineBytesInMemory() const { return LineBytes(*format, width); }
    std::uint32_t ImageBytes() const { return LineBytesInMemory() * height; }
};

/// All lines of a picture in the memory layout of one setup. Movement is vertical only, so a frame
/// consists of lines copied from here. Used by one thread at a time.
class Picture {
public:
    /// Renders the picture again unless the present one serves the setup too.
    void Prepare(const ImageSetup& setup);
    /// Copies the first `lines` lines of frame `frameId` into `out`.
    void CopyFrame(std::uint64_t frameId, std::uint32_t lines, std::uint8_t* out) const;

private:
    void Render();

    ImageSetup setup;
    std::vector<std::uint8_t> memory;
};

} // namespace pxsim
