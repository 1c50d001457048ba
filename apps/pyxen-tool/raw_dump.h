// raw_dump.h - files with images as the camera delivers them
#pragma once

#include "apps/common/host_image.h"
#include "imaging/pixel_format.h"

#include <cstdint>
#include <string>
#include <vector>

/// Bits per pixel in the camera's layout.
std::uint32_t RawBitsPerPixel(const pyxen::PixelFormat& format);
/// Size in bytes of an image in the camera's layout. Formats of one component that pack each line
/// separately ("p") pad every line to whole bytes, all others only the whole image.
std::uint64_t RawImageSize(const pyxen::PixelFormat& format, std::uint32_t width,
                           std::uint32_t height);
/// The host's layout for an image of this format.
ImageLayout HostLayout(const pyxen::PixelFormat& format, std::uint32_t width, std::uint32_t height);
/// Converts an image as the grabber module does. Throws CommandFailure if the size of `raw` is not
/// RawImageSize.
std::vector<std::uint8_t> ConvertDump(const pyxen::PixelFormat& format, std::uint32_t width,
                                      std::uint32_t height, const std::string& raw);
