// raw_dump.h - images as a camera delivers them, in files
#pragma once

#include "apps/common/host_image.h"
#include "grabber/pixel_format.h"

#include <cstdint>
#include <string>
#include <vector>

/// Bits that one pixel takes in the camera's layout.
std::uint32_t RawBitsPerPixel(const PixelFormat& format);
/// Bytes of an image in the camera's layout: lines are padded to whole bytes for formats of one
/// component with lines of their own ("p"), the image as a whole for all others.
std::uint64_t RawImageSize(const PixelFormat& format, std::uint32_t width, std::uint32_t height);
/// How the host sees an image of this format.
ImageLayout HostLayout(const PixelFormat& format, std::uint32_t width, std::uint32_t height);
/// Converts an image as the grabber module does; throws CommandFailure when `raw` has another
/// length than RawImageSize.
std::vector<std::uint8_t> ConvertDump(const PixelFormat& format, std::uint32_t width,
                                      std::uint32_t height, const std::string& raw);
