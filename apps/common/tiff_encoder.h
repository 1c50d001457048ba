// tiff_encoder.h - images in the form in which TIFF files hold them
//
// Values are those of the image, in one byte each or in two when more than 8 bits are significant;
// components are grey, RGB or RGB with alpha. A colour filter image is the mosaic that it is. The
// description of a page is a JSON object that tells the significant bits and the colour filter's
// pattern: {"significantBits":12,"colorFilter":"RGGB"}, or null without a filter.
//
// All functions throw CommandFailure, and may be called from any thread.
#pragma once

#include "apps/common/encoded_frame.h"
#include "apps/common/host_image.h"

#include <cstdint>
#include <vector>

/// True when a file of so many pages with so many bytes of pixels each, not compressed, may be
/// longer than 4 GB: its offsets have to have 64 bits (BigTIFF), which not every program reads.
bool MayWantBigTiff(std::uint64_t pages, std::uint64_t pixelBytes);

/// A whole file with one page, BigTIFF if it has to be.
void EncodeTiff(const ImageLayout& layout, const void* image, bool deflate, EncodedFrame& result);

/// The pixels of a page, for TiffPageOf: its strips one after the other. `head` holds the number of
/// bytes of each strip, 64 bits each.
void EncodeTiffStrips(const ImageLayout& layout, const void* image, bool deflate,
                      EncodedFrame& result);

/// What surrounds the pixels of a page.
struct TiffPage {
    std::vector<std::uint8_t> header; ///< of the file when this is its first page
    std::vector<std::uint8_t> tail;   ///< follows the pixels
    std::uint64_t directory = 0;      ///< offset of the page's directory in the file
    std::uint64_t nextDirectory = 0;  ///< offset of the link to the next page's, now 0
};

/// The bytes of `header`, behind which the first page begins.
std::uint64_t TiffHeaderBytes(bool isBig);

/// Makes the page of strips that begin `start` bytes from the beginning of the file.
TiffPage TiffPageOf(const ImageLayout& layout, const EncodedFrame& strips, bool deflate, bool isBig,
                    std::uint64_t start);
