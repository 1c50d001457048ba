// image_writer.h - writes image files
#pragma once

#include "apps/common/picture.h"

#include <string>

/// Writes an image in the format given by the extension of `path`:
///
/// - `.raw`: the bytes as in memory.
/// - `.png`: 8 or 16 bits. Samples of 10, 12 and 14 bits are shifted so that their highest bit
///   becomes the highest of 16. A colour filter image is written in colour.
/// - `.pgm`: grey, including the mosaic of a colour filter image, with unscaled values and the
///   format's own maximum. Refused for colour images.
/// - `.ppm`: colour, likewise unscaled; grey is written three times and alpha is dropped.
/// - `.pnm`: `.pgm` for one component, otherwise `.ppm`.
///
/// Throws CommandFailure for other extensions, layouts that cannot be written and write errors.
/// Overwrites an existing file.
void WriteImage(const std::string& path, const ImageLayout& layout, const void* data);

/// The reason why WriteImage would refuse the file name; empty if it would not.
std::string ImageFileNameProblem(const std::string& path);

/// The contents of a PNG file.
std::string EncodePng(const Picture& picture);
/// The contents of a PPM file, or without `colour` of a PGM file.
std::string EncodePnm(const Picture& picture, bool colour);
