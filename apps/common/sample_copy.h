// sample_copy.h - brings samples into the order of a file
#pragma once

#include "apps/common/host_image.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// How a file holds the samples of a pixel: in one byte each, or in two when more than 8 bits are
/// significant.
struct SampleOrder {
    std::uint32_t channels = 1;               ///< per pixel, at most four
    std::array<std::uint32_t, 4> component{}; ///< of the image, for each channel
    std::uint32_t shift = 0;                  ///< by which samples are moved up
    bool isBigEndian = false;
};

/// Red, green, blue and alpha in this order, or the one component of grey and colour filter images.
SampleOrder FileOrder(const ImageLayout& layout);

/// True when the image holds the samples as a file of that order does; it is looked at.
bool IsInOrder(const ImageLayout& layout, const void* image, const SampleOrder& order);

/// Replaces `bytes` by the significant bits of the image's samples in that order.
void CopySamples(const ImageLayout& layout, const void* image, const SampleOrder& order,
                 std::vector<std::uint8_t>& bytes);

/// Bytes of a sample in a file.
std::uint32_t FileSampleBytes(const ImageLayout& layout);

/// The reverse: fills an image from the samples of a file. Components that the file does not hold,
/// as alpha in a file of three channels, get their greatest value.
void RestoreSamples(const ImageLayout& layout, const std::uint8_t* bytes, const SampleOrder& order,
                    void* image);
