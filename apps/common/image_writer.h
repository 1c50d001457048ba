// image_writer.h - images as files
#pragma once

#include "apps/common/picture.h"

#include <string>

/// Writes an image of the host's layout as the ending of `path` says:
///
/// - `.raw`: the bytes as they are.
/// - `.png`: 8 or 16 bits. Samples of 10, 12 and 14 bits are moved up so that their highest bit is
///   the highest of 16. A colour filter image is written in colour.
/// - `.pgm`: grey, also the mosaic of a colour filter image, with the true values and the format's
///   own maximum. Refused for colour.
/// - `.ppm`: colour, likewise; grey is written three times and alpha is left out.
/// - `.pnm`: `.pgm` for one component, else `.ppm`.
///
/// Throws CommandFailure for another ending, a layout that nothing can show, and when the disk
/// refuses. An existing file is overwritten.
void WriteImage(const std::string& path, const ImageLayout& layout, const void* data);

/// Why WriteImage would refuse the file's name; empty when it would not.
std::string ImageFileNameProblem(const std::string& path);

/// The contents of files, for who does not want one.
std::string EncodePng(const Picture& picture);
std::string EncodePnm(const Picture& picture, bool colour);
