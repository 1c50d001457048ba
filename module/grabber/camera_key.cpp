// camera_key.cpp - the host's 32-bit number for a camera
#include "grabber/camera_key.h"

namespace pyxen {

namespace {

constexpr std::uint32_t kPolynomial = 0x04C11DB7u;

} // namespace

std::uint32_t CameraKey(const char* extendedId) {
    std::uint32_t crc = 0;
    for (; extendedId && *extendedId != '\0'; ++extendedId) {
        const auto byte = static_cast<unsigned char>(*extendedId);
        for (unsigned bit = 0; bit < 8; ++bit) {
            const bool differ = ((byte >> bit) & 1u) != crc >> 31;
            crc = crc << 1 ^ (differ ? kPolynomial : 0u);
        }
    }
    return crc;
}

} // namespace pyxen
