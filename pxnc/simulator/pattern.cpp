// pattern.cpp - what the simulated cameras see, as a formula that tests can repeat
#include "pxnc/simulator/pattern.h"

namespace pxsim {
namespace {

constexpr std::uint16_t kFull = 0xFFFF;

// A hash that mixes well, so that every pixel is independent of its neighbours and a picture can
// be computed starting from any point.
std::uint32_t Mix(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352D;
    value ^= value >> 15;
    value *= 0x846CA68B;
    value ^= value >> 16;
    return value;
}

std::uint16_t NoiseAt(std::uint32_t seed, std::uint32_t x, std::uint32_t line,
                      std::uint32_t component) {
    return static_cast<std::uint16_t>(Mix(Mix(Mix(seed + component) ^ x) ^ (line * 0x9E3779B9)));
}

// Eight bars of 80 columns with falling brightness; the lowest 64 lines of each 256 are a ramp,
// so that movement is visible.
Rgb16 ColorBarAt(std::uint32_t x, std::uint32_t line) {
    if ((line & 0xFF) >= 0xC0) {
        const std::uint16_t ramp = RampAt(x + line);
        return {ramp, ramp, ramp};
    }
    const std::uint32_t bar = 7 - (x / 80) % 8;
    return {(bar & 2) != 0 ? kFull : std::uint16_t{0}, (bar & 4) != 0 ? kFull : std::uint16_t{0},
            (bar & 1) != 0 ? kFull : std::uint16_t{0}};
}

// Line pairs that get finer from left to right, horizontal ones above vertical ones.
std::uint16_t ChartAt(std::uint32_t x, std::uint32_t line) {
    const std::uint32_t fineness = (x / 64) % 5;
    const std::uint32_t half = 16u >> fineness;
    const std::uint32_t along = (line & 0x80) != 0 ? line : x;
    return (along / half) % 2 != 0 ? kFull : std::uint16_t{0};
}

} // namespace

Rgb16 PictureColor(Pattern pattern, std::uint32_t seed, std::uint32_t x, std::uint32_t line) {
    switch (pattern) {
    case Pattern::kGradient:
        return {RampAt(x + line), RampAt(x + line + 85), RampAt(x + line + 170)};
    case Pattern::kColorBars:
        return ColorBarAt(x, line);
    case Pattern::kNoise:
        return {NoiseAt(seed, x, line, 0), NoiseAt(seed, x, line, 1), NoiseAt(seed, x, line, 2)};
    case Pattern::kResolutionChart:
    case Pattern::kBlack:
    case Pattern::kWhite:
        break;
    }
    const std::uint16_t grey = PictureMono(pattern, seed, x, line);
    return {grey, grey, grey};
}

std::uint16_t PictureMono(Pattern pattern, std::uint32_t seed, std::uint32_t x,
                          std::uint32_t line) {
    switch (pattern) {
    case Pattern::kGradient:
        return RampAt(x + line);
    case Pattern::kColorBars: {
        const Rgb16 color = ColorBarAt(x, line);
        return static_cast<std::uint16_t>(
            (color.red * 299u + color.green * 587u + color.blue * 114u) / 1000u);
    }
    case Pattern::kResolutionChart:
        return ChartAt(x, line);
    case Pattern::kNoise:
        return NoiseAt(seed, x, line, 0);
    case Pattern::kBlack:
        return 0;
    case Pattern::kWhite:
        return kFull;
    }
    return 0;
}

} // namespace pxsim
