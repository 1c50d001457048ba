// host_image.h - how the pixels of an image lie in the host's memory
#pragma once

#include "mivora/types.h"

#include <cstdint>

class CMivoraGfxMode;

/// An image without padding: line by line, pixel by pixel, component by component, every component
/// in `allocatedBits` bits of which the low `bits` count, in the machine's byte order.
struct ImageLayout {
    std::uint32_t width = 0;  ///< pixels
    std::uint32_t height = 0; ///< lines
    std::uint32_t components = 0;
    std::uint32_t allocatedBits = 0; ///< per component: 8 or 16
    std::uint32_t bits = 0;          ///< significant, per component
    MV_COLORCODING colorCoding = MVCC_MONO;
    std::uint32_t cfaX = 0;
    std::uint32_t cfaY = 0;

    std::uint64_t Size() const {
        return std::uint64_t{width} * height * components * allocatedBits / 8;
    }
    bool operator==(const ImageLayout&) const = default;
};

/// "Mono", "Bayer", "RGB" and so on.
const char* ColorCodingName(MV_COLORCODING coding);

/// What the mode says now.
ImageLayout DescribeImage(CMivoraGfxMode& mode);

/// Reads single components of an image.
class ImageReader {
public:
    ImageReader(const ImageLayout& imageLayout, const void* imageData)
        : layout(imageLayout), data(static_cast<const std::uint8_t*>(imageData)) {}

    const ImageLayout& Layout() const { return layout; }
    /// The significant bits of a component as they lie in memory.
    std::uint32_t At(std::uint32_t x, std::uint32_t y, std::uint32_t component = 0) const;

private:
    const ImageLayout& layout;
    const std::uint8_t* data;
};
