// tiff_file.cpp - reads images from TIFF files
#include "apps/recording/tiff_file.h"

#include "apps/common/command_failure.h"
#include "apps/common/sample_copy.h"

#include <tiffio.h>

#include <algorithm>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace {

// Deflate makes a block at most 1032 times smaller.
constexpr std::uint64_t kMostOfTiffByte = 1032;

struct FileCloser {
    void operator()(TIFF* file) const { TIFFClose(file); }
};

struct OptionsCloser {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

int KeepFirstMessage(TIFF*, void* message, const char*, const char* format, va_list arguments) {
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    auto& kept = *static_cast<std::string*>(message);
    kept = kept.empty() ? text : kept;
    return 1;
}

int DropMessage(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

template <typename Number>
Number TagOf(TIFF* file, std::uint32_t tag) {
    Number value = 0;
    TIFFGetFieldDefaulted(file, tag, &value);
    return value;
}

} // namespace

struct TiffFile::Impl {
    [[noreturn]] void Fail(const char* what) const {
        throw CommandFailure(std::string(what) + (message.empty() ? "" : ": " + message));
    }

    void CheckPage(const ImageLayout& layout) const;
    void ReadStrips(std::vector<std::uint8_t>& samples) const;

    std::string message;
    std::uint64_t fileBytes = 0;
    std::unique_ptr<TIFF, FileCloser> file; // after what its handlers use
};

TiffFile::TiffFile(const std::string& path) : impl(std::make_unique<Impl>()) {
    std::error_code error;
    impl->fileBytes = std::filesystem::file_size(path, error);
    if (error) {
        throw CommandFailure("it cannot be read: " + error.message());
    }
    const std::unique_ptr<TIFFOpenOptions, OptionsCloser> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &KeepFirstMessage, &impl->message);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &DropMessage, nullptr);
    // Not mapped: another program may shorten the file meanwhile.
    impl->file.reset(TIFFOpenExt(path.c_str(), "rm", options.get()));
    if (!impl->file) {
        impl->Fail("it is no TIFF file");
    }
}

TiffFile::~TiffFile() = default;

void TiffFile::Impl::CheckPage(const ImageLayout& layout) const {
    TIFF* const page = file.get();
    const auto width = TagOf<std::uint32_t>(page, TIFFTAG_IMAGEWIDTH);
    const auto height = TagOf<std::uint32_t>(page, TIFFTAG_IMAGELENGTH);
    if (width != layout.width || height != layout.height) {
        throw CommandFailure("it has " + std::to_string(width) + " x " + std::to_string(height) +
                             " pixels, not " + std::to_string(layout.width) + " x " +
                             std::to_string(layout.height) + " pixels");
    }
    const auto channels = TagOf<std::uint16_t>(page, TIFFTAG_SAMPLESPERPIXEL);
    const auto bits = TagOf<std::uint16_t>(page, TIFFTAG_BITSPERSAMPLE);
    const std::uint32_t wantedBits = FileSampleBytes(layout) * 8;
    if (channels != layout.components || bits != wantedBits) {
        throw CommandFailure("it has " + std::to_string(channels) + " channels of " +
                             std::to_string(bits) + " bits, not " +
                             std::to_string(layout.components) + " of " +
                             std::to_string(wantedBits));
    }
    const auto photometric = TagOf<std::uint16_t>(page, TIFFTAG_PHOTOMETRIC);
    if (TIFFIsTiled(page) != 0 ||
        TagOf<std::uint16_t>(page, TIFFTAG_PLANARCONFIG) != PLANARCONFIG_CONTIG ||
        photometric != (channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB)) {
        throw CommandFailure("its pixels are not kept as those of a recording");
    }
}

void TiffFile::Impl::ReadStrips(std::vector<std::uint8_t>& samples) const {
    TIFF* const page = file.get();
    const tmsize_t stripBytes = TIFFStripSize(page);
    std::size_t done = 0;
    for (std::uint32_t strip = 0; done < samples.size(); ++strip) {
        const auto wanted =
            std::min<tmsize_t>(stripBytes, static_cast<tmsize_t>(samples.size() - done));
        if (wanted <= 0 || strip >= TIFFNumberOfStrips(page) ||
            TIFFReadEncodedStrip(page, strip, samples.data() + done, wanted) != wanted) {
            Fail("it is damaged");
        }
        done += static_cast<std::size_t>(wanted);
    }
}

void TiffFile::Read(std::uint64_t directory, const ImageLayout& layout,
                    std::vector<std::uint8_t>& samples, std::vector<std::uint8_t>& image) {
    impl->message.clear();
    if (directory != 0 && TIFFSetSubDirectory(impl->file.get(), directory) != 1) {
        impl->Fail(("it has no page at byte " + std::to_string(directory)).c_str());
    }
    impl->CheckPage(layout);
    const std::uint64_t sampleBytes =
        std::uint64_t{layout.width} * layout.height * layout.components * FileSampleBytes(layout);
    if (sampleBytes / kMostOfTiffByte > impl->fileBytes) {
        throw CommandFailure("it is too short for its pixels");
    }
    samples.resize(static_cast<std::size_t>(sampleBytes));
    impl->ReadStrips(samples);
    SampleOrder order = FileOrder(layout);
    order.isBigEndian = std::endian::native == std::endian::big; // libtiff has seen to that
    image.resize(static_cast<std::size_t>(layout.Size()));
    RestoreSamples(layout, samples.data(), order, image.data());
}
