// pattern.h - what the simulated cameras see, as a formula that tests can repeat
//
// A picture is kPictureLines lines high and repeats above and below. Frame n of an acquisition
// shows it scrolled up by n lines (by 2n lines in Bayer formats, so that the filter stays in
// step): sensor line Y of frame n is picture line (Y + n) mod kPictureLines.
#pragma once

#include "pxnc/simulator/pixel_formats.h"

#include <cstdint>

namespace pxsim {

inline constexpr std::uint32_t kPictureLines = 512;

enum class Pattern {
    kGradient, // diagonal ramp, red, green and blue a third of the ramp apart
    kColorBars,
    kResolutionChart,
    kNoise, // pseudo-random, by seed
    kBlack,
    kWhite,
};

/// Components with 16 significant bits.
struct Rgb16 {
    std::uint16_t red;
    std::uint16_t green;
    std::uint16_t blue;
};

/// A component of 16 bits reduced to the most significant `bits`.
constexpr std::uint16_t ReduceTo(std::uint16_t value, unsigned bits) {
    return static_cast<std::uint16_t>(value >> (16 - bits));
}

/// The ramp of the gradient: 8 bits of position repeated in both bytes.
constexpr std::uint16_t RampAt(std::uint32_t position) {
    return static_cast<std::uint16_t>((position & 0xFF) * 0x0101);
}

/// Scroll of frame `frameId`, in lines.
constexpr std::uint32_t ScrollOf(const PixelFormat& format, std::uint64_t frameId) {
    const unsigned linesPerFrame = IsBayer(format) ? 2 : 1;
    return static_cast<std::uint32_t>(frameId % kPictureLines * linesPerFrame) % kPictureLines;
}

/// What a monochrome camera with the default pattern delivers at sensor position (x, y) in frame
/// `frameId`, with `bits` significant bits: ((x + y + frameId) mod 256), spread over the bits.
constexpr std::uint16_t GradientMono(std::uint32_t x, std::uint32_t y, std::uint64_t frameId,
                                     unsigned bits) {
    return ReduceTo(RampAt(x + y + static_cast<std::uint32_t>(frameId)), bits);
}

/// Colour of the picture at column `x` of sensor coordinates and picture line `line`.
Rgb16 PictureColor(Pattern pattern, std::uint32_t seed, std::uint32_t x, std::uint32_t line);
/// Brightness of the same point for monochrome formats.
std::uint16_t PictureMono(Pattern pattern, std::uint32_t seed, std::uint32_t x, std::uint32_t line);

} // namespace pxsim
