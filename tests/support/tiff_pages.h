// tiff_pages.h - what libtiff reads from a TIFF file
#pragma once

#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace support {

struct TiffPageContent {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t bits = 0;
    std::uint16_t channels = 0;
    std::uint16_t photometric = 0;
    std::uint16_t compression = 0;
    std::uint16_t predictor = 0; ///< 1 without one
    std::uint16_t mostOfSample = 0;
    std::uint16_t extraSamples = 0;
    std::uint64_t directory = 0; ///< offset in the file
    std::string description;
    std::vector<std::uint16_t> samples;
};

/// All pages; the test fails with each error and warning of libtiff.
inline std::vector<TiffPageContent> ReadTiffPages(const std::string& path, bool* isBig = nullptr) {
    TIFFSetErrorHandler(
        [](const char*, const char* format, va_list) { ADD_FAILURE() << "libtiff: " << format; });
    TIFFSetWarningHandler(
        [](const char*, const char* format, va_list) { ADD_FAILURE() << "libtiff: " << format; });
    std::vector<TiffPageContent> pages;
    const std::unique_ptr<TIFF, void (*)(TIFF*)> file(TIFFOpen(path.c_str(), "r"), [](TIFF* open) {
        if (open) {
            TIFFClose(open);
        }
    });
    if (!file) {
        ADD_FAILURE() << path << " is no TIFF file";
        return pages;
    }
    if (isBig) {
        *isBig = TIFFIsBigTIFF(file.get()) != 0;
    }
    do {
        TiffPageContent page;
        char* description = nullptr;
        std::uint16_t* extraKinds = nullptr;
        TIFFGetField(file.get(), TIFFTAG_IMAGEWIDTH, &page.width);
        TIFFGetField(file.get(), TIFFTAG_IMAGELENGTH, &page.height);
        TIFFGetField(file.get(), TIFFTAG_BITSPERSAMPLE, &page.bits);
        TIFFGetField(file.get(), TIFFTAG_SAMPLESPERPIXEL, &page.channels);
        TIFFGetField(file.get(), TIFFTAG_PHOTOMETRIC, &page.photometric);
        TIFFGetField(file.get(), TIFFTAG_COMPRESSION, &page.compression);
        TIFFGetField(file.get(), TIFFTAG_MAXSAMPLEVALUE, &page.mostOfSample);
        TIFFGetField(file.get(), TIFFTAG_EXTRASAMPLES, &page.extraSamples, &extraKinds);
        page.predictor = PREDICTOR_NONE;
        if (page.compression != COMPRESSION_NONE) {
            TIFFGetField(file.get(), TIFFTAG_PREDICTOR, &page.predictor);
        }
        if (TIFFGetField(file.get(), TIFFTAG_IMAGEDESCRIPTION, &description) == 1) {
            page.description = description;
        }
        page.directory = TIFFCurrentDirOffset(file.get());
        const auto lineBytes = static_cast<std::size_t>(TIFFScanlineSize(file.get()));
        std::vector<std::uint8_t> line(lineBytes);
        for (std::uint32_t y = 0; y < page.height; ++y) {
            EXPECT_EQ(TIFFReadScanline(file.get(), line.data(), y, 0), 1) << y;
            for (std::size_t at = 0; at < lineBytes; at += page.bits / 8u) {
                std::uint16_t sample = line[at];
                if (page.bits == 16) {
                    std::memcpy(&sample, line.data() + at, sizeof sample);
                }
                page.samples.push_back(sample);
            }
        }
        pages.push_back(page);
    } while (TIFFReadDirectory(file.get()) == 1);
    return pages;
}

} // namespace support
