// blocks.h - converts an image in blocks of as many pixels as one step takes
//
// Everything here is compiled once per instruction set and must stay local to the including file:
// nothing has external linkage, and no function of the standard library is called that the linker
// could take from another file.
#pragma once

#include "imaging/pixel_format.h"

#include <cstdint>

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

/// Converts `pixelCount` pixels with `Block::Convert`, which reads and writes exactly one block.
/// Blocks at both ends may overlap their neighbours, which writes some pixels twice. `plain`
/// converts an incomplete last group, and images smaller than a block.
template <typename Block>
void ConvertBlocks(const void* source, void* destination, std::uint64_t pixelCount,
                   ConvertFunction plain) {
    static_assert(Block::kPixels % Block::kGroupPixels == 0);
    static_assert(Block::kAlignment <= Block::kPixels * (Block::kPixelBytes == 3 ? 1 : 2));
    const auto* const from = static_cast<const std::uint8_t*>(source);
    auto* const to = static_cast<std::uint8_t*>(destination);
    const auto sourceAt = [from](std::uint64_t pixel) {
        return from + pixel / Block::kGroupPixels * Block::kGroupBytes;
    };
    const auto destinationAt = [to](std::uint64_t pixel) {
        return to + pixel * Block::kPixelBytes;
    };
    const std::uint64_t whole = pixelCount - pixelCount % Block::kGroupPixels;
    if (whole < Block::kPixels) {
        plain(source, destination, pixelCount);
        return;
    }
    const std::uint64_t last = whole - Block::kPixels;
    const std::uint64_t aligned = PixelsToAlignment<Block>(to);
    std::uint64_t next = aligned > 0 ? aligned : Block::kPixels;
    // A single call of Convert for all blocks: it is large, and compilers inline only one.
    for (std::uint64_t at = 0;; next += Block::kPixels) {
        Block::Convert(sourceAt(at), destinationAt(at));
        if (at == last) {
            break;
        }
        at = next < last ? next : last;
    }
    if (whole < pixelCount) {
        plain(sourceAt(whole), destinationAt(whole), pixelCount - whole);
    }
}

} // namespace

} // namespace pyxen
