// plain_packed.cpp - 10 and 12 bits per pixel without gaps, to 16 bits per pixel
#include "imaging/conversion/plain_converters.h"

#include <cstring>

namespace pyxen {

namespace {

// Host images may be at any address.
void StorePixel(std::uint8_t*& destination, unsigned value) {
    const auto pixel = static_cast<std::uint16_t>(value);
    std::memcpy(destination, &pixel, sizeof pixel);
    destination += sizeof pixel;
}

} // namespace

void PlainUnpack10p(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (; pixelCount >= 4; pixelCount -= 4, bytes += 5) {
        StorePixel(pixels, bytes[0] + (bytes[1] & 0x03u) * 256);
        StorePixel(pixels, (bytes[1] >> 2) + (bytes[2] & 0x0Fu) * 64);
        StorePixel(pixels, (bytes[2] >> 4) + (bytes[3] & 0x3Fu) * 16);
        StorePixel(pixels, (bytes[3] >> 6) + bytes[4] * 4u);
    }
    if (pixelCount > 0) {
        StorePixel(pixels, bytes[0] + (bytes[1] & 0x03u) * 256);
    }
    if (pixelCount > 1) {
        StorePixel(pixels, (bytes[1] >> 2) + (bytes[2] & 0x0Fu) * 64);
    }
    if (pixelCount > 2) {
        StorePixel(pixels, (bytes[2] >> 4) + (bytes[3] & 0x3Fu) * 16);
    }
}

void PlainUnpack12p(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (; pixelCount >= 2; pixelCount -= 2, bytes += 3) {
        StorePixel(pixels, bytes[0] + (bytes[1] & 0x0Fu) * 256);
        StorePixel(pixels, (bytes[1] >> 4) + bytes[2] * 16u);
    }
    if (pixelCount > 0) {
        StorePixel(pixels, bytes[0] + (bytes[1] & 0x0Fu) * 256);
    }
}

void PlainUnpack10Packed(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (; pixelCount >= 2; pixelCount -= 2, bytes += 3) {
        StorePixel(pixels, (bytes[0] * 4u + (bytes[1] & 0x03u)) & 0x03FFu);
        StorePixel(pixels, (bytes[2] * 4u + (bytes[1] >> 4 & 0x03u)) & 0x03FFu);
    }
    if (pixelCount > 0) {
        StorePixel(pixels, (bytes[0] * 4u + (bytes[1] & 0x03u)) & 0x03FFu);
    }
}

void PlainUnpack12Packed(const void* source, void* destination, std::uint64_t pixelCount) {
    const auto* bytes = static_cast<const std::uint8_t*>(source);
    auto* pixels = static_cast<std::uint8_t*>(destination);
    for (; pixelCount >= 2; pixelCount -= 2, bytes += 3) {
        StorePixel(pixels, (bytes[0] * 16u + (bytes[1] & 0x0Fu)) & 0x0FFFu);
        StorePixel(pixels, (bytes[2] * 16u + (bytes[1] >> 4)) & 0x0FFFu);
    }
    if (pixelCount > 0) {
        StorePixel(pixels, (bytes[0] * 16u + (bytes[1] & 0x0Fu)) & 0x0FFFu);
    }
}

} // namespace pyxen
