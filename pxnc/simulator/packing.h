// packing.h - packs components into the bit layout of a pixel format
#pragma once

#include "pxnc/simulator/pixel_formats.h"

#include <cstdint>
#include <vector>

namespace pxsim {

/// Writes one line. `components` holds the line's components in memory order (R, G, B of each
/// pixel for the YUV formats), already reduced to the format's bits; `out` takes
/// LineBytes(format, width) bytes. `width` is a multiple of WidthGroup(format).
void PackLine(const PixelFormat& format, const std::vector<std::uint16_t>& components,
              std::uint32_t width, std::uint8_t* out);

} // namespace pxsim
