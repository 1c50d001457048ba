// camera_key.h - the host's 32-bit number for a camera
#pragma once

#include <cstdint>

namespace pyxen {

/// CRC of the identifier's bytes: polynomial 0x04C11DB7, register starting at 0 and shifted
/// towards the high bit, each byte fed least significant bit first, no final inversion. Null and
/// the empty text give 0.
std::uint32_t CameraKey(const char* extendedId);

} // namespace pyxen
