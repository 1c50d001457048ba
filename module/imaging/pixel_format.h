// pixel_format.h - the supported pixel formats and their conversion for the host
#pragma once

#include "mivora/types.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace pyxen {

/// Converts `pixelCount` pixels from the camera's layout to the host's.
using ConvertFunction = void (*)(const void* source, void* destination, std::uint64_t pixelCount);
/// The address of line `row` in a raw image whose lines are padded to whole bytes.
using RowAddressFunction = const void* (*)(const void* base, std::uint32_t width,
                                           std::uint32_t row);

/// The host's layout of one pixel format, and the conversion to it.
struct PixelFormat {
    const char* name;   ///< entry of the feature "PixelFormat"
    std::uint32_t code; ///< PFNC code; 0 when it is found by name only
    std::uint8_t components;
    std::uint8_t allocatedBits; ///< per component
    std::uint8_t bits;          ///< significant, per component
    MV_COLORCODING colorCoding;
    std::uint8_t cfaX;
    std::uint8_t cfaY;
    const char* conversionName;    ///< null when the host takes the pixels as they are
    ConvertFunction convert;       ///< null in the same case
    RowAddressFunction rowAddress; ///< null unless lines are converted one by one
};

/// All formats, in the order in which they are searched.
std::span<const PixelFormat> PixelFormatTable();
/// The first entry with this code, or null; code 0 finds nothing.
const PixelFormat* FindPixelFormatByCode(std::uint32_t code);
/// The first entry with this name, case ignored, or null.
const PixelFormat* FindPixelFormatByName(const char* name);

// The converters. Any alignment and length; they access only the bytes that the pixels occupy.
void Unpack10p(const void* source, void* destination, std::uint64_t pixelCount);
void Unpack12p(const void* source, void* destination, std::uint64_t pixelCount);
void Unpack10Packed(const void* source, void* destination, std::uint64_t pixelCount);
void Unpack12Packed(const void* source, void* destination, std::uint64_t pixelCount);
void ConvertYUV422(const void* source, void* destination, std::uint64_t pixelCount);
void ConvertYUV444(const void* source, void* destination, std::uint64_t pixelCount);
void ConvertYUV411(const void* source, void* destination, std::uint64_t pixelCount);

const void* RowAddress10p(const void* base, std::uint32_t width, std::uint32_t row);
const void* RowAddress12p(const void* base, std::uint32_t width, std::uint32_t row);

/// How an image is written: into the cache, or past it.
enum class Stores { kOrdinary, kStreaming };
/// What makes converting an image of that size and then reading it take the least time.
Stores StoresFor(const PixelFormat& format, std::uint32_t width, std::uint32_t height);
/// Bytes of a line of the host's image.
std::uint64_t HostRowBytes(const PixelFormat& format, std::uint32_t width);
/// In every multiple of this number of lines all groups of pixels are whole.
inline constexpr std::uint32_t kRowsOfWholeGroups = 4;
/// Converts `count` lines of an image from line `first` on, a multiple of kRowsOfWholeGroups; so
/// must `count` be but for the last lines. The lines of an image that is converted in several steps
/// are those that ConvertImage makes of it. Accesses only the bytes of these lines.
void ConvertRows(const PixelFormat& format, const void* raw, void* host, std::uint32_t width,
                 std::uint32_t first, std::uint32_t count, Stores stores);
/// Converts a whole image: in one call, or line by line where the format has a row address.
/// `format.convert` must be set; `host` holds width x height pixels of the host's layout.
void ConvertImage(const PixelFormat& format, const void* raw, void* host, std::uint32_t width,
                  std::uint32_t height);

} // namespace pyxen
