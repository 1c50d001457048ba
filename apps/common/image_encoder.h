// image_encoder.h - images in the forms in which files hold them
//
// All functions throw CommandFailure for layouts that cannot be written, and may be called from any
// thread.
#pragma once

#include "apps/common/encoded_frame.h"
#include "apps/common/host_image.h"
#include "apps/common/sample_copy.h"

#include <cstdint>

/// Refuses images without pixels, and others than of 1, 3 or 4 components in 8 or 16 bits.
void CheckImageLayout(const ImageLayout& layout);

/// Points the result at the image when its samples can be written as they stand, else at a copy in
/// that order.
void PutSamples(const ImageLayout& layout, const void* image, const SampleOrder& order,
                EncodedFrame& result);

/// The image as it stands; every layout.
void EncodeRaw(const ImageLayout& layout, const void* image, EncodedFrame& result);

/// A PNG file of 8 bits, or of 16 when there are more than 8 significant ones, with the samples
/// shifted so that their highest bit becomes the highest of the file. A colour filter image is
/// written in colour. `level` 0 does not compress, 9 compresses best.
void EncodePng(const ImageLayout& layout, const void* image, std::uint32_t level,
               EncodedFrame& result);

/// A PGM file, or with `colour` a PPM file, with unscaled samples and the layout's own maximum.
/// Grey is written three times into a PPM file, alpha is dropped; a PGM file holds one component,
/// also the mosaic of a colour filter image.
void EncodePnm(const ImageLayout& layout, const void* image, bool colour, EncodedFrame& result);
