// raw_dump.cpp - files with images as the camera delivers them
#include "apps/pyxen-tool/raw_dump.h"

#include "apps/common/command_failure.h"

#include <cstring>

using namespace pyxen;

std::uint32_t RawBitsPerPixel(const PixelFormat& format) {
    // The third byte of a PFNC code. The one format without a code needs no conversion.
    return format.code != 0 ? (format.code >> 16) & 0xFFu
                            : std::uint32_t{format.components} * format.allocatedBits;
}

std::uint64_t RawImageSize(const PixelFormat& format, std::uint32_t width, std::uint32_t height) {
    const std::uint64_t bits = RawBitsPerPixel(format);
    if (format.rowAddress && format.components == 1) {
        return (bits * width + 7) / 8 * height;
    }
    return (bits * width * height + 7) / 8;
}

ImageLayout HostLayout(const PixelFormat& format, std::uint32_t width, std::uint32_t height) {
    return {width,
            height,
            format.components,
            format.allocatedBits,
            format.bits,
            format.colorCoding,
            format.cfaX,
            format.cfaY};
}

std::vector<std::uint8_t> ConvertDump(const PixelFormat& format, std::uint32_t width,
                                      std::uint32_t height, const std::string& raw) {
    const std::uint64_t expected = RawImageSize(format, width, height);
    if (raw.size() != expected) {
        throw CommandFailure("a " + std::string(format.name) + " image of " +
                             std::to_string(width) + " x " + std::to_string(height) +
                             " pixels has " + std::to_string(expected) + " bytes, this dump has " +
                             std::to_string(raw.size()));
    }
    std::vector<std::uint8_t> host(
        static_cast<std::size_t>(HostLayout(format, width, height).Size()));
    if (format.convert) {
        ConvertImage(format, raw.data(), host.data(), width, height);
    } else {
        std::memcpy(host.data(), raw.data(), host.size());
    }
    return host;
}
