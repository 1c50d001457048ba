// image_writer.h - writes image files
#pragma once

#include "apps/common/encoded_frame.h"
#include "apps/common/host_image.h"

#include <cstdint>
#include <string>

struct ImageFileOptions {
    std::uint32_t pngLevel = 1; ///< 0, not compressed, to 9
    bool deflate = false;       ///< compress the pixels of TIFF files
};

enum class ImageFileFormat { kUnknown, kRaw, kPng, kTiff, kPgm, kPpm, kPnm };

/// By the extension of the name, case ignored.
ImageFileFormat ImageFileFormatOf(const std::string& path);

/// Writes an image in the format given by the extension of `path`:
///
/// - `.raw`: the bytes as in memory. What they are stands beside it, in `path`.json:
///   {"schema":1,"layout":{"width":...,"height":...,...}}.
/// - `.png`: 8 or 16 bits. Samples of 10, 12 and 14 bits are shifted so that their highest bit
///   becomes the highest of 16. A colour filter image is written in colour.
/// - `.tif`, `.tiff`: 8 or 16 bits with unscaled values, a colour filter image as its mosaic. The
///   description in the file tells the significant bits and the filter's pattern.
/// - `.pgm`: grey, including the mosaic of a colour filter image, with unscaled values and the
///   format's own maximum. Refused for colour images.
/// - `.ppm`: colour, likewise unscaled; grey is written three times and alpha is dropped.
/// - `.pnm`: `.pgm` for one component, otherwise `.ppm`.
///
/// Depth and channels follow the layout, whatever the samples are. A file of that name is replaced
/// when the new one is whole. Throws CommandFailure for other extensions, layouts that cannot be
/// written and write errors.
void WriteImage(const std::string& path, const ImageLayout& layout, const void* data,
                const ImageFileOptions& options = {});

/// Makes an image ready to be written as WriteImage would write it to a file of this name. `result`
/// may point into the image. Throws CommandFailure likewise.
void EncodeImage(const std::string& path, const ImageLayout& layout, const void* data,
                 const ImageFileOptions& options, EncodedFrame& result);

/// The reason why WriteImage would refuse the file name; empty if it would not.
std::string ImageFileNameProblem(const std::string& path);
/// Why a text is no level of compression for PNG; empty if it is one.
std::string PngLevelProblem(const std::string& text);
