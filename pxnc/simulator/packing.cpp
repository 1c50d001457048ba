// packing.cpp - packs components into the bit layout of a pixel format
#include "pxnc/simulator/packing.h"

#include <algorithm>
#include <cstring>

namespace pxsim {
namespace {

using Components = std::vector<std::uint16_t>;

std::uint8_t Byte(unsigned value) {
    return static_cast<std::uint8_t>(value);
}

void PackBytes(const Components& in, std::uint8_t* out) {
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[i] = Byte(in[i]);
    }
}

void PackWords(const Components& in, std::uint8_t* out) {
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[2 * i] = Byte(in[i] & 0xFFu);
        out[2 * i + 1] = Byte(in[i] >> 8u);
    }
}

void PackBits(const Components& in, unsigned bits, std::uint8_t* out) {
    std::uint32_t pending = 0;
    unsigned count = 0;
    for (const std::uint16_t value : in) {
        pending |= std::uint32_t{value} << count;
        count += bits;
        while (count >= 8) {
            *out++ = Byte(pending & 0xFFu);
            pending >>= 8;
            count -= 8;
        }
    }
    if (count > 0) {
        *out = Byte(pending & 0xFFu);
    }
}

void PackPairs(const Components& in, unsigned lowBits, std::uint8_t* out) {
    const unsigned mask = (1u << lowBits) - 1;
    for (std::size_t i = 0; i + 1 < in.size(); i += 2) {
        *out++ = Byte(static_cast<unsigned>(in[i]) >> lowBits);
        *out++ = Byte((in[i] & mask) | ((in[i + 1] & mask) << 4));
        *out++ = Byte(static_cast<unsigned>(in[i + 1]) >> lowBits);
    }
}

// Full-range BT.601 in 16.16 fixed point, rounded.
struct Yuv {
    unsigned u, y, v;
};

Yuv ToYuv(unsigned red, unsigned green, unsigned blue) {
    const auto r = static_cast<int>(red);
    const auto g = static_cast<int>(green);
    const auto b = static_cast<int>(blue);
    const auto clamp = [](int value) {
        return static_cast<unsigned>(std::clamp(value, 0, 255));
    };
    constexpr int kHalf = 1 << 15;
    constexpr int kMiddle = 128 << 16;
    return {clamp((-11059 * r - 21709 * g + 32768 * b + kMiddle + kHalf) >> 16),
            clamp((19595 * r + 38470 * g + 7471 * b + kHalf) >> 16),
            clamp((32768 * r - 27439 * g - 5329 * b + kMiddle + kHalf) >> 16)};
}

// `kGroup` pixels share the mean of their U and V.
template <unsigned kGroup>
void PackYuv(const Components& in, std::uint8_t* out) {
    for (std::size_t i = 0; i + 3 * kGroup <= in.size(); i += 3 * kGroup) {
        unsigned u = 0;
        unsigned v = 0;
        unsigned y[kGroup];
        for (unsigned pixel = 0; pixel < kGroup; ++pixel) {
            const std::uint16_t* rgb = in.data() + i + 3 * pixel;
            const Yuv one = ToYuv(rgb[0], rgb[1], rgb[2]);
            u += one.u;
            v += one.v;
            y[pixel] = one.y;
        }
        constexpr unsigned kBeforeV = (kGroup + 1) / 2;
        *out++ = Byte(u / kGroup);
        for (unsigned pixel = 0; pixel < kBeforeV; ++pixel) {
            *out++ = Byte(y[pixel]);
        }
        *out++ = Byte(v / kGroup);
        for (unsigned pixel = kBeforeV; pixel < kGroup; ++pixel) {
            *out++ = Byte(y[pixel]);
        }
    }
}

} // namespace

void PackLine(const PixelFormat& format, const std::vector<std::uint16_t>& components,
              std::uint32_t width, std::uint8_t* out) {
    switch (format.layout) {
    case Layout::kBytes:
        return PackBytes(components, out);
    case Layout::kWords:
        return PackWords(components, out);
    case Layout::kLsbPacked:
        return PackBits(components, format.bits, out);
    case Layout::kPacked10:
        return PackPairs(components, 2, out);
    case Layout::kPacked12:
        return PackPairs(components, 4, out);
    case Layout::kYuv444:
        return PackYuv<1>(components, out);
    case Layout::kYuv422:
        return PackYuv<2>(components, out);
    case Layout::kYuv411:
        return PackYuv<4>(components, out);
    }
    std::memset(out, 0, LineBytes(format, width));
}

} // namespace pxsim
