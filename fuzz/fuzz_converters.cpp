// fuzz_converters.cpp - every conversion on any bytes: nothing outside the buffers is touched
#include "grabber/pixel_format.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

// Exactly the bytes that `pixels` pixels take, so that the sanitizer sees one too many.
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
    if (format.convert == nullptr) {
        return 0;
    }
    std::vector<std::uint8_t> source(SourceBytes(format, pixels));
    if (!source.empty() && size > 3) {
        for (std::size_t at = 0; at < source.size(); ++at) {
            source[at] = data[3 + at % (size - 3)];
        }
    }
    // Packed formats and whole-group formats are one component a pixel, YUV becomes three.
    const std::size_t hostBytes = format.allocatedBits == 16 ? pixels * 2 : pixels * 3;
    std::vector<std::uint8_t> host(hostBytes);
    format.convert(source.data(), host.data(), pixels);
    return 0;
}
