// plain_yuv.cpp - luma and chroma bytes to red, green and blue bytes
#include "imaging/conversion/plain_converters.h"

namespace pyxen {

namespace {

std::uint8_t Clamp(double value) {
    if (value <= 0) {
        return 0;
    }
    return value >= 255 ? 255 : static_cast<std::uint8_t>(value);
}

void StoreRgb(std::uint8_t*& destination, double y, double u, double v) {
    *destination++ = Clamp(y + 1.40199958 * v - 179.4557903);
    *destination++ = Clamp(y + 135.4587945 - (0.344135677 * u + 0.71413615 * v));
    *destination++ = Clamp(y + 1.77200007 * u - 226.816062);
}

} // namespace

void PlainConvertYUV422(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (std::uint64_t pairs = pixelCount / 2; pairs > 0; --pairs, bytes += 4) {
        const std::uint8_t u = bytes[0];
        const std::uint8_t v = bytes[2];
        StoreRgb(pixels, bytes[1], u, v);
        StoreRgb(pixels, bytes[3], u, v);
    }
}

void PlainConvertYUV444(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (; pixelCount > 0; --pixelCount, bytes += 3) {
        StoreRgb(pixels, bytes[1], bytes[0], bytes[2]);
    }
}

void PlainConvertYUV411(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (std::uint64_t groups = pixelCount / 4; groups > 0; --groups, bytes += 6) {
        const std::uint8_t u = bytes[0];
        const std::uint8_t v = bytes[3];
        StoreRgb(pixels, bytes[1], u, v);
        StoreRgb(pixels, bytes[2], u, v);
        StoreRgb(pixels, bytes[4], u, v);
        StoreRgb(pixels, bytes[5], u, v);
    }
}

} // namespace pyxen
