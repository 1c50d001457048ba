// big_endian.h - 32-bit values as registers and chunks hold them
#pragma once

#include <cstdint>

namespace pxsim {

inline std::uint32_t LoadBigEndian(const std::uint8_t* in) {
    return (std::uint32_t{in[0]} << 24) | (std::uint32_t{in[1]} << 16) |
           (std::uint32_t{in[2]} << 8) | in[3];
}

inline void StoreBigEndian(std::uint32_t value, std::uint8_t* out) {
    for (unsigned i = 0; i < 4; ++i) {
        out[i] = static_cast<std::uint8_t>((value >> (24 - 8 * i)) & 0xFF);
    }
}

} // namespace pxsim
