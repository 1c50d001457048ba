// tiff_encoder.cpp - images in the form in which TIFF files hold them
#include "apps/common/tiff_encoder.h"

#include "apps/common/command_failure.h"
#include "apps/common/compression.h"
#include "apps/common/demosaic.h"
#include "apps/common/image_encoder.h"
#include "apps/common/json_text.h"
#include "apps/common/sample_copy.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr std::uint32_t kDeflateLevel = 1;
constexpr std::uint64_t kStripBytes = 256 * 1024; // what is compressed at a time stays in the cache

std::uint32_t SampleBytes(const ImageLayout& layout) {
    return layout.bits > 8 ? 2 : 1;
}

std::uint64_t LineBytes(const ImageLayout& layout) {
    return std::uint64_t{layout.width} * layout.components * SampleBytes(layout);
}

/// Without compression there is nothing to be gained from several strips.
std::uint32_t LinesOfStrip(const ImageLayout& layout, bool deflate) {
    return deflate ? static_cast<std::uint32_t>(std::clamp<std::uint64_t>(
                         kStripBytes / LineBytes(layout), 1, layout.height))
                   : layout.height;
}

/// Neighbours in the mosaic of a colour filter have different colours: their differences are no
/// smaller than their values.
bool IsPredicted(const ImageLayout& layout, bool deflate) {
    return deflate && layout.colorCoding != MVCC_RAW_CFA;
}

std::string Description(const ImageLayout& layout) {
    JsonValue pattern = nullptr;
    if (layout.colorCoding == MVCC_RAW_CFA) {
        pattern = std::string{FilterLetter(layout, 0, 0), FilterLetter(layout, 1, 0),
                              FilterLetter(layout, 0, 1), FilterLetter(layout, 1, 1)};
    }
    return JsonObject({{"significantBits", layout.bits}, {"colorFilter", pattern}}).Text();
}

/// Replaces each sample by its difference to the same one of the pixel before.
template <typename Sample>
void Predict(std::uint8_t* line, const ImageLayout& layout) {
    auto* const samples = reinterpret_cast<Sample*>(line);
    for (std::size_t at = std::size_t{layout.width} * layout.components;
         at-- > layout.components;) {
        samples[at] = static_cast<Sample>(samples[at] - samples[at - layout.components]);
    }
}

void PutCount(std::vector<std::uint8_t>& counts, std::uint64_t count) {
    const std::size_t at = counts.size();
    counts.resize(at + sizeof count);
    std::memcpy(counts.data() + at, &count, sizeof count);
}

std::uint64_t CountAt(const std::vector<std::uint8_t>& counts, std::size_t index) {
    std::uint64_t count = 0;
    std::memcpy(&count, counts.data() + index * sizeof count, sizeof count);
    return count;
}

/// Replaces the samples by compressed strips.
void Deflate(const ImageLayout& layout, EncodedFrame& result) {
    const Compressor compressor(kDeflateLevel);
    const auto lineBytes = static_cast<std::size_t>(LineBytes(layout));
    const std::size_t lines = LinesOfStrip(layout, true);
    const std::uint8_t* const samples = result.pixels;
    const bool isPredicted = IsPredicted(layout, true);
    std::vector<std::uint8_t> strip;
    std::vector<std::uint8_t> compressed;
    for (std::size_t first = 0; first < layout.height; first += lines) {
        const std::size_t count = std::min<std::size_t>(lines, layout.height - first);
        strip.assign(samples + first * lineBytes, samples + (first + count) * lineBytes);
        for (std::size_t line = 0; isPredicted && line < count; ++line) {
            std::uint8_t* const begin = strip.data() + line * lineBytes;
            SampleBytes(layout) == 2 ? Predict<std::uint16_t>(begin, layout)
                                     : Predict<std::uint8_t>(begin, layout);
        }
        const std::size_t end = compressed.size();
        compressed.resize(end + compressor.Bound(strip.size()));
        const std::size_t size =
            compressor.Compress(strip.data(), strip.size(), compressed.data() + end);
        compressed.resize(end + size);
        PutCount(result.head, size);
    }
    result.body.swap(compressed);
    result.pixels = result.body.data();
    result.pixelBytes = result.body.size();
}

/// A file for libtiff in which there is nothing yet but what lies before a page. It takes the page
/// apart: what is written over the beginning is the header, what is behind the pixels the tail. The
/// pixels are not copied: it is known where they are.
class PageFile {
public:
    PageFile(TiffPage& tiffPage, std::uint64_t pagesStart, const EncodedFrame& strips)
        : page(tiffPage),
          start(pagesStart),
          pixelsEnd(start + strips.pixelBytes),
          pixels(strips.pixels),
          end(start) {}

    static tmsize_t Read(thandle_t, void*, tmsize_t) { return 0; }
    static tmsize_t Write(thandle_t handle, void* data, tmsize_t size) {
        return Self(handle).Put(static_cast<const std::uint8_t*>(data),
                                static_cast<std::uint64_t>(size))
                   ? size
                   : -1;
    }
    static toff_t Seek(thandle_t handle, toff_t offset, int from) {
        PageFile& self = Self(handle);
        self.position =
            from == SEEK_SET ? offset : offset + (from == SEEK_END ? self.end : self.position);
        return self.position;
    }
    static toff_t Size(thandle_t handle) { return Self(handle).end; }
    static int Close(thandle_t) { return 0; }

private:
    static PageFile& Self(thandle_t handle) { return *static_cast<PageFile*>(handle); }

    bool Put(const std::uint8_t* data, std::uint64_t size) {
        const std::uint64_t to = position + size;
        if (to <= TiffHeaderBytes(true) && position < start) {
            Copy(page.header, position, data, size);
        } else if (position >= start && to <= pixelsEnd && data == pixels + (position - start)) {
            // Where they are already.
        } else if (position >= pixelsEnd) {
            Copy(page.tail, position - pixelsEnd, data, size);
        } else {
            return false;
        }
        position = to;
        end = std::max(end, to);
        return true;
    }
    static void Copy(std::vector<std::uint8_t>& bytes, std::uint64_t offset,
                     const std::uint8_t* data, std::uint64_t size) {
        bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(offset + size)));
        std::memcpy(bytes.data() + offset, data, static_cast<std::size_t>(size));
    }

    TiffPage& page;
    const std::uint64_t start;
    const std::uint64_t pixelsEnd;
    const std::uint8_t* const pixels;
    std::uint64_t position = 0;
    std::uint64_t end;
};

struct TiffCloser {
    void operator()(TIFF* file) const { TIFFClose(file); }
};

struct OpenOptionsCloser {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

int KeepMessage(TIFF*, void* message, const char*, const char* format, va_list arguments) {
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    *static_cast<std::string*>(message) = text;
    return 1;
}

int IgnoreMessage(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

void DescribePage(TIFF* file, const ImageLayout& layout, bool deflate) {
    const auto components = static_cast<std::uint16_t>(layout.components);
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, layout.width);
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, layout.height);
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, components);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, static_cast<std::uint16_t>(SampleBytes(layout) * 8));
    TIFFSetField(file, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    TIFFSetField(file, TIFFTAG_MAXSAMPLEVALUE, static_cast<std::uint16_t>((1u << layout.bits) - 1));
    TIFFSetField(file, TIFFTAG_PHOTOMETRIC,
                 components == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    if (components == 4) {
        const std::uint16_t alpha[] = {EXTRASAMPLE_UNASSALPHA};
        TIFFSetField(file, TIFFTAG_EXTRASAMPLES, std::uint16_t{1}, alpha);
    }
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, LinesOfStrip(layout, deflate));
    TIFFSetField(file, TIFFTAG_IMAGEDESCRIPTION, Description(layout).c_str());
    TIFFSetField(file, TIFFTAG_COMPRESSION, deflate ? COMPRESSION_ADOBE_DEFLATE : COMPRESSION_NONE);
    if (IsPredicted(layout, deflate)) {
        TIFFSetField(file, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    }
}

template <typename Number>
std::uint64_t NumberAt(const std::vector<std::uint8_t>& bytes, std::uint64_t offset) {
    Number number = 0;
    std::memcpy(&number, bytes.data() + offset, sizeof number);
    return number;
}

/// Behind the number of entries and the entries of a directory is the link to the next one.
void FindDirectory(TiffPage& page, bool isBig, std::uint64_t tailStart) {
    page.directory =
        isBig ? NumberAt<std::uint64_t>(page.header, 8) : NumberAt<std::uint32_t>(page.header, 4);
    const std::uint64_t inTail = page.directory - tailStart;
    page.nextDirectory =
        page.directory + (isBig ? 8 + 20 * NumberAt<std::uint64_t>(page.tail, inTail)
                                : 2 + 12 * NumberAt<std::uint16_t>(page.tail, inTail));
}

} // namespace

bool MayWantBigTiff(std::uint64_t pages, std::uint64_t pixelBytes) {
    constexpr std::uint64_t kMostBytes = 0xFFFFFFFF;
    constexpr std::uint64_t kDescription = 4096; // more than directory and header take
    // What cannot be compressed becomes longer, and each strip has its place in two tables.
    const std::uint64_t mostOfPage = pixelBytes + pixelBytes / 512 + kDescription;
    return pages > kMostBytes / mostOfPage;
}

std::uint64_t TiffHeaderBytes(bool isBig) {
    return isBig ? 16 : 8;
}

void EncodeTiffStrips(const ImageLayout& layout, const void* image, bool deflate,
                      EncodedFrame& result) {
    CheckImageLayout(layout);
    result.head.clear();
    result.tail.clear();
    PutSamples(layout, image, FileOrder(layout), result);
    if (deflate) {
        Deflate(layout, result);
    } else {
        PutCount(result.head, result.pixelBytes);
    }
}

TiffPage TiffPageOf(const ImageLayout& layout, const EncodedFrame& strips, bool deflate, bool isBig,
                    std::uint64_t start) {
    TiffPage page;
    PageFile pageFile(page, start, strips);
    std::string reason;
    const std::unique_ptr<TIFFOpenOptions, OpenOptionsCloser> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &KeepMessage, &reason);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &IgnoreMessage, nullptr);
    bool isWhole = false;
    {
        const std::unique_ptr<TIFF, TiffCloser> file(TIFFClientOpenExt(
            "page", isBig ? "w8" : "w4", &pageFile, &PageFile::Read, &PageFile::Write,
            &PageFile::Seek, &PageFile::Close, &PageFile::Size, nullptr, nullptr, options.get()));
        if (file) {
            DescribePage(file.get(), layout, deflate);
            const std::uint8_t* strip = strips.pixels;
            isWhole = true;
            for (std::uint32_t at = 0; isWhole && at < strips.head.size() / 8; ++at) {
                const std::uint64_t bytes = CountAt(strips.head, at);
                isWhole = TIFFWriteRawStrip(file.get(), at, const_cast<std::uint8_t*>(strip),
                                            static_cast<tmsize_t>(bytes)) >= 0;
                strip += bytes;
            }
            isWhole = isWhole && TIFFWriteDirectory(file.get()) == 1;
        }
    }
    if (!isWhole) {
        throw CommandFailure("cannot encode a TIFF image: " + reason);
    }
    page.header.resize(static_cast<std::size_t>(TiffHeaderBytes(isBig)));
    FindDirectory(page, isBig, start + strips.pixelBytes);
    return page;
}

void EncodeTiff(const ImageLayout& layout, const void* image, bool deflate, EncodedFrame& result) {
    EncodeTiffStrips(layout, image, deflate, result);
    const bool isBig = MayWantBigTiff(1, result.pixelBytes);
    TiffPage page = TiffPageOf(layout, result, deflate, isBig, TiffHeaderBytes(isBig));
    result.head.swap(page.header);
    result.tail.swap(page.tail);
}
