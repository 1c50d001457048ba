// host_image.h - memory layout of the host's images
#pragma once

#include "mivora/types.h"

#include <cstdint>

class CMivoraGfxMode;

/// An image without padding: lines, pixels and components in order, each component in the low
/// `bits` of `allocatedBits` bits in native byte order.
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

/// The layout that the mode currently reports.
ImageLayout DescribeImage(CMivoraGfxMode& mode);

/// Reads single components of an image.
class ImageReader {
public:
    ImageReader(const ImageLayout& imageLayout, const void* imageData)
        : layout(imageLayout), data(static_cast<const std::uint8_t*>(imageData)) {}

    const ImageLayout& Layout() const { return layout; }
    /// The significant bits of a component.
    std::uint32_t At(std::uint32_t x, std::uint32_t y, std::uint32_t component = 0) const;

private:
    const ImageLayout& layout;
    const std::uint8_t* data;
};
