// pixel_formats.h - the formats the cameras can send, in their real bit layout
#pragma once

#include <cstdint>
#include <span>

namespace pxsim {

/// How the components of a line lie in memory.
enum class Layout {
    kBytes,     // one byte per component
    kWords,     // 16 bits per component, low byte first, value in the low bits
    kLsbPacked, // components follow each other bit by bit, lowest bit first ("p")
    kPacked10,  // two 10-bit pixels in three bytes: high 8 bits, both low parts, high 8 bits
    kPacked12,  // two 12-bit pixels in three bytes, likewise
    kYuv444,    // U Y V for each pixel
    kYuv422,    // U Y0 V Y1 for two pixels
    kYuv411,    // U Y0 Y1 V Y2 Y3 for four pixels
};

/// Which components a pixel has, in memory order, or the colour of the filter's top left corner.
enum class Order {
    kMono,
    kBayerGR,
    kBayerRG,
    kBayerGB,
    kBayerBG,
    kRgb,
    kBgr,
    kRgba,
    kBgra,
    kArgb,
};

struct PixelFormat {
    const char* name;
    std::uint32_t code;
    Layout layout;
    Order order;
    unsigned bits; // significant bits of a component
};

/// The code of "Argb8Packed", which the naming convention does not define: one of the range that
/// it leaves to makers (custom, colour, 32 bits per pixel).
inline constexpr std::uint32_t kArgb8PackedCode = 0x82200001;

/// All formats, in the order of the PixelFormat entries.
std::span<const PixelFormat> AllPixelFormats();
/// Null when no format has that name, compared exactly.
const PixelFormat* FindPixelFormat(const char* name);

unsigned ComponentsOf(const PixelFormat& format);
constexpr bool IsBayer(const PixelFormat& format) {
    return format.order >= Order::kBayerGR && format.order <= Order::kBayerBG;
}
/// Bits of a pixel in memory, averaged over a group.
unsigned BitsPerPixel(const PixelFormat& format);
/// Lines hold a multiple of this many pixels, so that each begins on a whole byte. 1 for
/// single-component LSB-packed formats: their lines are padded instead.
unsigned WidthGroup(const PixelFormat& format);
/// Bytes from one line to the next.
std::uint32_t LineBytes(const PixelFormat& format, std::uint32_t width);

} // namespace pxsim
