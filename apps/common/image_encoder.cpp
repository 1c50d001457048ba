// image_encoder.cpp - images in the forms in which files hold them
#include "apps/common/image_encoder.h"

#include "apps/common/command_failure.h"
#include "apps/common/compression.h"
#include "apps/common/demosaic.h"

#include <lodepng.h>

#include <cstdlib>
#include <new>
#include <string>

namespace {

constexpr std::uint32_t kGrey = 1;
constexpr std::uint32_t kRgb = 3;
constexpr std::uint32_t kLevelOfBestFilter = 6;

// Errors of lodepng.
constexpr unsigned kPngMemoryMissing = 83;
constexpr unsigned kPngNotCompressed = 111; // CompressForPng fails for lack of memory only

/// Compresses for lodepng, whose own compressor is several times slower and knows no levels. The
/// result is freed by lodepng.
unsigned CompressForPng(unsigned char** compressed, std::size_t* compressedSize,
                        const unsigned char* content, std::size_t size,
                        const LodePNGCompressSettings* settings) {
    const auto& compressor = *static_cast<const Compressor*>(settings->custom_context);
    *compressed = static_cast<unsigned char*>(std::malloc(compressor.Bound(size)));
    if (!*compressed) {
        return kPngMemoryMissing;
    }
    *compressedSize = compressor.Compress(content, size, *compressed);
    return 0;
}

LodePNGColorType PngColorType(std::uint32_t channels) {
    return channels == kGrey ? LCT_GREY : channels == kRgb ? LCT_RGB : LCT_RGBA;
}

} // namespace

void CheckImageLayout(const ImageLayout& layout) {
    const bool isShown =
        (layout.components == 1 || layout.components == 3 || layout.components == 4) &&
        (layout.allocatedBits == 8 || layout.allocatedBits == 16) && layout.bits > 0 &&
        layout.bits <= layout.allocatedBits;
    if (layout.width == 0 || layout.height == 0 || !isShown) {
        throw CommandFailure("cannot write an image of " + std::to_string(layout.width) + " x " +
                             std::to_string(layout.height) + " pixels with " +
                             std::to_string(layout.components) + " components of " +
                             std::to_string(layout.bits) + " bits");
    }
}

void PutSamples(const ImageLayout& layout, const void* image, const SampleOrder& order,
                EncodedFrame& result) {
    if (IsInOrder(layout, image, order)) {
        result.pixels = static_cast<const std::uint8_t*>(image);
        result.pixelBytes = static_cast<std::size_t>(layout.Size());
        return;
    }
    CopySamples(layout, image, order, result.body);
    result.pixels = result.body.data();
    result.pixelBytes = result.body.size();
}

void EncodeRaw(const ImageLayout& layout, const void* image, EncodedFrame& result) {
    result.head.clear();
    result.tail.clear();
    result.pixels = static_cast<const std::uint8_t*>(image);
    result.pixelBytes = static_cast<std::size_t>(layout.Size());
}

void EncodePng(const ImageLayout& layout, const void* image, std::uint32_t level,
               EncodedFrame& result) {
    CheckImageLayout(layout);
    if (layout.colorCoding == MVCC_RAW_CFA) {
        const Picture picture = Demosaic(ImageReader(layout, image));
        const ImageLayout coloured{
            picture.width, picture.height, picture.channels, 16, picture.bits, MVCC_RGB, 0, 0};
        EncodePng(coloured, picture.samples.data(), level, result);
        return;
    }
    const std::uint32_t depth = layout.bits > 8 ? 16 : 8;
    SampleOrder order = FileOrder(layout);
    order.shift = depth - layout.bits;
    order.isBigEndian = true;
    EncodedFrame samples;
    PutSamples(layout, image, order, samples);

    const Compressor compressor(level);
    lodepng::State state;
    state.info_raw.colortype = PngColorType(layout.components);
    state.info_raw.bitdepth = depth;
    state.info_png.color.colortype = state.info_raw.colortype;
    state.info_png.color.bitdepth = depth;
    state.encoder.auto_convert = 0; // a black picture keeps its depth
    // Each line as the difference to the one above: nearly as small as the best filter of each.
    state.encoder.filter_strategy = level == 0                   ? LFS_ZERO
                                    : level < kLevelOfBestFilter ? LFS_TWO
                                                                 : LFS_MINSUM;
    state.encoder.zlibsettings.custom_zlib = CompressForPng;
    state.encoder.zlibsettings.custom_context = &compressor;
    result.head.clear();
    result.tail.clear();
    result.body.clear();
    const unsigned error =
        lodepng::encode(result.body, samples.pixels, layout.width, layout.height, state);
    if (error == kPngMemoryMissing || error == kPngNotCompressed) {
        throw std::bad_alloc();
    }
    if (error != 0) {
        throw CommandFailure(std::string("cannot encode a PNG image: ") +
                             lodepng_error_text(error));
    }
    result.pixels = result.body.data();
    result.pixelBytes = result.body.size();
}

void EncodePnm(const ImageLayout& layout, const void* image, bool colour, EncodedFrame& result) {
    CheckImageLayout(layout);
    SampleOrder order = FileOrder(layout);
    if (colour) {
        order.channels = kRgb;
        if (layout.components == kGrey) {
            order.component = {0, 0, 0, 0};
        }
    } else if (layout.components != kGrey) {
        throw CommandFailure("a PGM file holds one component, this image has " +
                             std::to_string(layout.components));
    }
    order.isBigEndian = true;
    const std::uint32_t most = (1u << layout.bits) - 1;
    const std::string head = (colour ? "P6\n" : "P5\n") + std::to_string(layout.width) + " " +
                             std::to_string(layout.height) + "\n" + std::to_string(most) + "\n";
    result.head.assign(head.begin(), head.end());
    result.tail.clear();
    PutSamples(layout, image, order, result);
}
