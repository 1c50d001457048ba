// blocks.h - converts an image in blocks of as many pixels as one step takes
//
// Everything here is compiled once per instruction set and must stay local to the including file:
// nothing has external linkage, and no function of the standard library is called that the linker
// could take from another file.
#pragma once

#include "imaging/pixel_format.h"

#include <xmmintrin.h>

#include <cstdint>

// Blocks are large: left to themselves, compilers call some of them instead, with all their
// constants loaded anew each time.
#if defined(__GNUC__)
#define PYXEN_INLINE_ALL [[gnu::flatten]]
#else
#define PYXEN_INLINE_ALL
#endif

namespace pyxen {

namespace {

// The number of pixels after which stores to `destination` are aligned to `kAlignment` bytes; less
// than kAlignment, and 0 when no whole group ends there.
template <typename Block>
std::uint64_t PixelsToAlignment(const std::uint8_t* destination) {
    constexpr std::uint64_t kAlignment = Block::kAlignment;
    const std::uint64_t bytes = (0 - reinterpret_cast<std::uintptr_t>(destination)) % kAlignment;
    std::uint64_t pixels = 0;
    if constexpr (Block::kPixelBytes == 3) {
        // 3 * 43 is 1 modulo 64, and so modulo every smaller power of two.
        pixels = bytes * 43 % kAlignment;
    } else {
        pixels = bytes % 2 == 0 ? bytes / 2 : 0;
    }
    return pixels % Block::kGroupPixels == 0 ? pixels : 0;
}

/// A block for the inside of an image. It may read `kAround` bytes before and after its own; one
/// that streams writes past the cache, for which its first pixel must be aligned in the host's
/// image.
template <typename Block, int kAround, bool kStreams>
struct Inside : Block {
    static constexpr int kReadsAround = kAround;
    static constexpr bool kIsStreaming = kStreams;
};

/// Converts `pixelCount` pixels with `Inner::Convert`, at the ends with `Block::Convert`, which
/// reads and writes exactly one block. Blocks at the ends may overlap their neighbours, which
/// writes some pixels twice. `Inner` is an Inside of as many pixels as `Block` has. `plain`
/// converts an incomplete last group, and images smaller than a block.
template <typename Block, typename Inner = Inside<Block, 0, false>>
PYXEN_INLINE_ALL void ConvertBlocks(const void* source, void* destination, std::uint64_t pixelCount,
                                    ConvertFunction plain) {
    constexpr std::uint64_t kPixels = Block::kPixels;
    constexpr std::uint64_t kSourceBytes = kPixels / Block::kGroupPixels * Block::kGroupBytes;
    constexpr std::uint64_t kBytes = kPixels * Block::kPixelBytes;
    // The pixels on either side whose bytes an inner block may read.
    constexpr std::uint64_t kAroundPixels =
        (Inner::kReadsAround + Block::kGroupBytes - 1) / Block::kGroupBytes * Block::kGroupPixels;
    // After at most as many pixels stores are aligned, and again after each further such number.
    constexpr std::uint64_t kAlignmentPixels =
        Block::kAlignment / (Block::kPixelBytes == 3 ? 1 : 2);
    static_assert(kPixels % Block::kGroupPixels == 0 && kBytes % Block::kAlignment == 0);
    static_assert(Inner::kPixels == Block::kPixels && kAroundPixels + kAlignmentPixels <= kPixels);
    const auto* const from = static_cast<const std::uint8_t*>(source);
    auto* const to = static_cast<std::uint8_t*>(destination);
    const auto sourceAt = [from](std::uint64_t pixel) {
        return from + pixel / Block::kGroupPixels * Block::kGroupBytes;
    };
    const auto destinationAt = [to](std::uint64_t pixel) {
        return to + pixel * Block::kPixelBytes;
    };
    const std::uint64_t whole = pixelCount - pixelCount % Block::kGroupPixels;
    if (whole < kPixels) {
        plain(source, destination, pixelCount);
        return;
    }
    const std::uint64_t last = whole - kPixels;
    const std::uint64_t aligned = PixelsToAlignment<Block>(to);
    std::uint64_t next = kPixels;
    if (aligned > 0) {
        next = aligned < kAroundPixels ? aligned + kAlignmentPixels : aligned;
    }
    if constexpr (Inner::kIsStreaming) {
        if (reinterpret_cast<std::uintptr_t>(destinationAt(next)) % Block::kAlignment != 0) {
            ConvertBlocks<Block>(source, destination, pixelCount, plain);
            return;
        }
    }
    // In the order of their addresses, as memory is read ahead.
    Block::Convert(from, to);
    const std::uint8_t* innerSource = sourceAt(next);
    std::uint8_t* innerDestination = destinationAt(next);
    for (; next + kAroundPixels <= last; next += kPixels) {
        Inner::Convert(innerSource, innerDestination);
        innerSource += kSourceBytes;
        innerDestination += kBytes;
    }
    if constexpr (Inner::kIsStreaming) {
        _mm_sfence(); // nothing else orders these stores before what tells others of the image
    }
    // What is left before the last block, and that one.
    while (next < last + kPixels) {
        const std::uint64_t at = next < last ? next : last;
        Block::Convert(sourceAt(at), destinationAt(at));
        next += kPixels;
    }
    if (whole < pixelCount) {
        plain(sourceAt(whole), destinationAt(whole), pixelCount - whole);
    }
}

} // namespace

} // namespace pyxen

#undef PYXEN_INLINE_ALL
