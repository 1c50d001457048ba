// host_image.cpp - how the pixels of an image lie in the host's memory
#include "apps/common/host_image.h"

#include "mivora/gfx_mode.h"

#include <cstring>

ImageLayout DescribeImage(CMivoraGfxMode& mode) {
    ImageLayout layout;
    layout.width = mode.GetxRes();
    layout.height = mode.GetyRes();
    layout.components = mode.GetNumComponents();
    layout.allocatedBits = mode.GetAllocatedBitPerComponent();
    layout.bits = mode.GetBitPerComponent();
    layout.colorCoding = mode.GetColorCoding();
    layout.cfaX = mode.GetCFAxOffset();
    layout.cfaY = mode.GetCFAyOffset();
    return layout;
}

std::uint32_t ImageReader::At(std::uint32_t x, std::uint32_t y, std::uint32_t component) const {
    const std::size_t index = (std::size_t{y} * layout.width + x) * layout.components + component;
    const std::uint32_t mask = (1u << layout.bits) - 1;
    if (layout.allocatedBits == 8) {
        return data[index] & mask;
    }
    std::uint16_t value = 0;
    std::memcpy(&value, data + index * sizeof value, sizeof value);
    return value & mask;
}
