// host_image.cpp - memory layout of the host's images
#include "apps/common/host_image.h"

#include <cstring>

const char* ColorCodingName(MV_COLORCODING coding) {
    switch (coding) {
    case MVCC_MONO:
        return "Mono";
    case MVCC_RAW_CFA:
        return "Bayer";
    case MVCC_RGB:
        return "RGB";
    case MVCC_ARGB:
        return "ARGB";
    case MVCC_RGBA:
        return "RGBA";
    case MVCC_BGR:
        return "BGR";
    case MVCC_BGRA:
        return "BGRA";
    }
    return "unknown"; // a module may return a value outside the enumeration
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
