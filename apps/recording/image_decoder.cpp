// image_decoder.cpp - images from the forms in which files hold them
#include "apps/recording/image_decoder.h"

#include "apps/common/command_failure.h"
#include "apps/common/demosaic.h"
#include "apps/common/sample_copy.h"

#include <libdeflate.h>
#include <lodepng.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

constexpr std::uint32_t kMostImageSide = 1u << 24;
constexpr std::uint32_t kColours = 3;
// Deflate makes a block at most 1032 times smaller.
constexpr std::uint64_t kMostDeflated = 1032;

struct DecompressorCloser {
    void operator()(libdeflate_decompressor* decompressor) const {
        libdeflate_free_decompressor(decompressor);
    }
};

/// Decompresses for lodepng, whose own way is several times slower. The context is the size that
/// the content must have. The result is freed by lodepng.
unsigned Decompress(unsigned char** content, std::size_t* size, const unsigned char* compressed,
                    std::size_t compressedSize, const LodePNGDecompressSettings* settings) {
    constexpr unsigned kNoMemory = 83; // lodepng's codes
    constexpr unsigned kDamaged = 95;
    const std::size_t wanted = *static_cast<const std::size_t*>(settings->custom_context);
    const std::unique_ptr<libdeflate_decompressor, DecompressorCloser> decompressor(
        libdeflate_alloc_decompressor());
    *content = static_cast<unsigned char*>(std::malloc(wanted));
    if (!decompressor || !*content) {
        return kNoMemory;
    }
    *size = wanted;
    return libdeflate_zlib_decompress(decompressor.get(), compressed, compressedSize, *content,
                                      wanted, nullptr) == LIBDEFLATE_SUCCESS
               ? 0
               : kDamaged;
}

std::string SizeText(std::uint64_t width, std::uint64_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

void CheckSize(const ImageLayout& layout, std::uint64_t width, std::uint64_t height) {
    if (width != layout.width || height != layout.height) {
        throw CommandFailure("it has " + SizeText(width, height) + ", not " +
                             SizeText(layout.width, layout.height));
    }
}

LodePNGColorType ColourType(std::uint32_t channels) {
    return channels == 1 ? LCT_GREY : channels == kColours ? LCT_RGB : LCT_RGBA;
}

/// The image is in colour: of each pixel the colour of the filter is the one that was recorded.
template <typename From>
void TakeFilterColours(ImageLayout layout, const std::uint8_t* bytes, SampleOrder order,
                       std::vector<std::uint8_t>& image) {
    constexpr std::string_view kLetters = "RGB";
    std::size_t channels[2][2];
    for (std::uint32_t y = 0; y < 2; ++y) {
        for (std::uint32_t x = 0; x < 2; ++x) {
            channels[y][x] = kLetters.find(FilterLetter(layout, x, y));
        }
    }
    std::vector<std::uint8_t> mosaic(std::size_t{layout.width} * layout.height * sizeof(From));
    const auto* from = reinterpret_cast<const From*>(bytes);
    auto* to = reinterpret_cast<From*>(mosaic.data());
    for (std::uint32_t y = 0; y < layout.height; ++y) {
        for (std::uint32_t x = 0; x < layout.width; ++x, from += kColours) {
            *to++ = from[channels[y & 1][x & 1]];
        }
    }
    order.channels = 1;
    order.component = {};
    RestoreSamples(layout, mosaic.data(), order, image.data());
}

/// Reads the words of a PNM file's head.
class PnmHead {
public:
    explicit PnmHead(const std::string& fileContent) : content(fileContent) {}

    std::uint64_t Number() {
        SkipBlanks();
        std::uint64_t number = 0;
        const char* const begin = content.data() + std::min(at, content.size());
        const auto read = std::from_chars(begin, content.data() + content.size(), number);
        if (read.ec != std::errc()) {
            throw CommandFailure("it is no PNM file");
        }
        at += static_cast<std::size_t>(read.ptr - begin);
        return number;
    }
    /// Behind the blank after the last number.
    std::size_t End() const { return std::min(at, content.size() - 1) + 1; }

private:
    void SkipBlanks() {
        constexpr std::string_view kSkipped = " \t\r\n#";
        while (at < content.size() && kSkipped.find(content[at]) != std::string_view::npos) {
            at = content[at] == '#' ? content.find('\n', at) : at + 1;
        }
    }

    const std::string& content;
    std::size_t at = 2; // behind the magic number; beyond the end after a comment without end
};

} // namespace

bool IsPossibleImage(const ImageLayout& layout) {
    return layout.width != 0 && layout.width <= kMostImageSide && layout.height != 0 &&
           layout.height <= kMostImageSide &&
           (layout.components == 1 || layout.components == 3 || layout.components == 4) &&
           (layout.allocatedBits == 8 || layout.allocatedBits == 16) && layout.bits != 0 &&
           layout.bits <= layout.allocatedBits &&
           (layout.colorCoding != MVCC_RAW_CFA || layout.components == 1);
}

void DecodePng(const std::string& content, const ImageLayout& layout,
               std::vector<std::uint8_t>& samples, std::vector<std::uint8_t>& image) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(content.data());
    const bool isFilter = layout.colorCoding == MVCC_RAW_CFA;
    const std::uint32_t depth = FileSampleBytes(layout) * 8;
    const std::uint32_t channels = isFilter ? kColours : layout.components;
    lodepng::State state;
    unsigned width = 0;
    unsigned height = 0;
    if (const unsigned error = lodepng_inspect(&width, &height, &state, bytes, content.size())) {
        throw CommandFailure(std::string("it is no PNG file: ") + lodepng_error_text(error));
    }
    CheckSize(layout, width, height);
    const LodePNGColorMode& colour = state.info_png.color;
    if (colour.colortype != ColourType(channels) || colour.bitdepth != depth) {
        throw CommandFailure("it has " + std::to_string(lodepng_get_channels(&colour)) +
                             " channels of " + std::to_string(colour.bitdepth) + " bits, not " +
                             std::to_string(channels) + " of " + std::to_string(depth));
    }
    const std::uint64_t lineBytes = std::uint64_t{width} * channels * depth / 8 + 1;
    std::size_t scanBytes = static_cast<std::size_t>(lineBytes * height);
    if (scanBytes / kMostDeflated > content.size()) {
        throw CommandFailure("it is too short for " + SizeText(width, height));
    }
    state.decoder.color_convert = 0;
    if (state.info_png.interlace_method == 0) {
        state.decoder.zlibsettings.custom_zlib = Decompress;
        state.decoder.zlibsettings.custom_context = &scanBytes;
    }
    samples.clear();
    if (const unsigned error =
            lodepng::decode(samples, width, height, state, bytes, content.size())) {
        throw CommandFailure(std::string("it is damaged: ") + lodepng_error_text(error));
    }
    SampleOrder order = FileOrder(layout);
    order.shift = depth - layout.bits;
    order.isBigEndian = true;
    image.resize(static_cast<std::size_t>(layout.Size()));
    if (!isFilter) {
        RestoreSamples(layout, samples.data(), order, image.data());
    } else if (depth == 8) {
        TakeFilterColours<std::uint8_t>(layout, samples.data(), order, image);
    } else {
        TakeFilterColours<std::uint16_t>(layout, samples.data(), order, image);
    }
}

void DecodePnm(const std::string& content, const ImageLayout& layout,
               std::vector<std::uint8_t>& image) {
    const bool isColour = layout.components > 1;
    const std::string_view magic = isColour ? "P6" : "P5";
    if (!content.starts_with(magic)) {
        throw CommandFailure("it is no " + std::string(magic) + " file");
    }
    PnmHead head(content);
    const std::uint64_t width = head.Number();
    const std::uint64_t height = head.Number();
    const std::uint64_t most = head.Number();
    CheckSize(layout, width, height);
    const std::uint64_t wantedMost = (std::uint64_t{1} << layout.bits) - 1;
    if (most != wantedMost) {
        throw CommandFailure("its greatest value is " + std::to_string(most) + ", not " +
                             std::to_string(wantedMost));
    }
    SampleOrder order = FileOrder(layout);
    order.channels = isColour ? kColours : 1;
    order.isBigEndian = true;
    const std::uint64_t wanted = width * height * order.channels * FileSampleBytes(layout);
    const std::uint64_t there = content.size() - head.End();
    if (there != wanted) {
        throw CommandFailure("it has " + std::to_string(there) + " bytes of samples, not " +
                             std::to_string(wanted));
    }
    image.resize(static_cast<std::size_t>(layout.Size()));
    RestoreSamples(layout, reinterpret_cast<const std::uint8_t*>(content.data()) + head.End(),
                   order, image.data());
}
