// fuzz_converters.cpp - pixel conversions stay inside their buffers
#include "imaging/pixel_format.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

using namespace pyxen;

namespace {

// The exact size of `pixels` pixels, so that the sanitizer detects any access beyond it.
std::size_t SourceBytes(const PixelFormat& format, std::size_t pixels) {
    const std::string_view name = format.conversionName;
    if (name == "Unpack10p") {
        return (pixels * 10 + 7) / 8;
    }
    if (name == "Unpack12p" || name == "Unpack10Packed" || name == "Unpack12Packed") {
        return (pixels * 12 + 7) / 8;
    }
    if (name == "ConvertYUV444") {
        return pixels * 3;
    }
    if (name == "ConvertYUV422") {
        return pixels / 2 * 4;
    }
    return pixels / 4 * 6; // ConvertYUV411
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) {
        return 0;
    }
    const auto formats = PixelFormatTable();
    const PixelFormat& format = formats[data[0] % formats.size()];
    const std::size_t pixels = data[1] + 256u * (data[2] & 3u);
    if (!format.convert) {
        return 0;
    }
    std::vector<std::uint8_t> source(SourceBytes(format, pixels));
    if (!source.empty() && size > 3) {
        for (std::size_t at = 0; at < source.size(); ++at) {
            source[at] = data[3 + at % (size - 3)];
        }
    }
    // One 16-bit component per pixel, or three bytes for YUV formats.
    const std::size_t hostBytes = format.allocatedBits == 16 ? pixels * 2 : pixels * 3;
    std::vector<std::uint8_t> host(hostBytes);
    format.convert(source.data(), host.data(), pixels);
    return 0;
}
