// every_format_test.cpp - each pixel format in each image file
#include "apps/common/image_encoder.h"
#include "apps/common/image_writer.h"
#include "apps/common/picture.h"
#include "apps/pyxen-tool/raw_dump.h"
#include "imaging/pixel_format.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/tiff_pages.h"

#include <gtest/gtest.h>
#include <lodepng.h>

#include <random>
#include <sstream>

namespace {

constexpr std::uint32_t kFormatWidth = 16;
constexpr std::uint32_t kFormatHeight = 6;
using FormatSamples = std::vector<std::uint16_t>;

class EveryFormat : public testing::TestWithParam<bool> {
protected:
    /// Calls `check(format, layout, image)` for every format, with a black image or a random one.
    template <typename Check>
    void ForEach(const Check& check) {
        std::mt19937 random(11);
        for (const pyxen::PixelFormat& format : pyxen::PixelFormatTable()) {
            SCOPED_TRACE(format.name);
            std::string raw(RawSize(format), '\0');
            for (char& byte : raw) {
                byte = IsBlack() ? '\0' : static_cast<char>(random());
            }
            const auto image = ConvertDump(format, kFormatWidth, kFormatHeight, raw);
            check(format, HostLayout(format, kFormatWidth, kFormatHeight), image.data());
        }
    }
    static bool IsBlack() { return GetParam(); }
    static std::size_t RawSize(const pyxen::PixelFormat& format) {
        return static_cast<std::size_t>(RawImageSize(format, kFormatWidth, kFormatHeight));
    }
    static std::uint16_t Depth(const pyxen::PixelFormat& format) {
        return format.bits > 8 ? 16 : 8;
    }

    support::TemporaryDirectory directory;
};

INSTANTIATE_TEST_SUITE_P(Pictures, EveryFormat, testing::Bool(),
                         [](const auto& isBlack) { return isBlack.param ? "Black" : "Random"; });

TEST_P(EveryFormat, HasItsDepthChannelsAndValuesInATiffFile) {
    const std::string path = directory.PathOf("image.tif");
    ForEach([&](const pyxen::PixelFormat& format, const ImageLayout& layout, const void* image) {
        const FormatSamples values = MakePicture(layout, image, false).samples;
        for (const bool deflate : {false, true}) {
            ImageFileOptions options;
            options.deflate = deflate;
            WriteImage(path, layout, image, options);
            const auto pages = support::ReadTiffPages(path);
            ASSERT_EQ(pages.size(), 1u);
            EXPECT_EQ(pages[0].width, kFormatWidth);
            EXPECT_EQ(pages[0].height, kFormatHeight);
            EXPECT_EQ(pages[0].bits, Depth(format));
            EXPECT_EQ(pages[0].channels, format.components);
            EXPECT_EQ(pages[0].mostOfSample, (1u << format.bits) - 1);
            EXPECT_EQ(pages[0].samples, values);
        }
    });
}

TEST_P(EveryFormat, HasItsDepthChannelsAndValuesInAPngFile) {
    const std::string path = directory.PathOf("image.png");
    ForEach([&](const pyxen::PixelFormat& format, const ImageLayout& layout, const void* image) {
        const Picture picture = MakePicture(layout, image, true);
        WriteImage(path, layout, image);
        const std::string file = directory.Read("image.png");
        lodepng::State state;
        state.decoder.color_convert = 0;
        std::vector<unsigned char> bytes;
        unsigned width = 0;
        unsigned height = 0;
        ASSERT_EQ(lodepng::decode(bytes, width, height, state,
                                  reinterpret_cast<const unsigned char*>(file.data()), file.size()),
                  0u);
        EXPECT_EQ(width, kFormatWidth);
        EXPECT_EQ(height, kFormatHeight);
        EXPECT_EQ(state.info_raw.bitdepth, Depth(format));
        EXPECT_EQ(state.info_raw.colortype, picture.channels == 1   ? LCT_GREY
                                            : picture.channels == 3 ? LCT_RGB
                                                                    : LCT_RGBA);
        const unsigned shift = Depth(format) - format.bits;
        ASSERT_EQ(bytes.size(), picture.samples.size() * Depth(format) / 8);
        for (std::size_t at = 0; at < picture.samples.size(); ++at) {
            const unsigned value =
                Depth(format) == 8 ? bytes[at] : bytes[2 * at] * 256u + bytes[2 * at + 1];
            ASSERT_EQ(value, static_cast<unsigned>(picture.samples[at]) << shift) << at;
        }
    });
}

TEST_P(EveryFormat, HasItsValuesInAPnmFile) {
    const std::string path = directory.PathOf("image.pnm");
    ForEach([&](const pyxen::PixelFormat& format, const ImageLayout& layout, const void* image) {
        const Picture picture = MakePicture(layout, image, false);
        WriteImage(path, layout, image);
        const std::string file = directory.Read("image.pnm");
        const unsigned most = (1u << format.bits) - 1;
        std::ostringstream head;
        head << (format.components == 1 ? "P5\n" : "P6\n") << kFormatWidth << " " << kFormatHeight
             << "\n"
             << most << "\n";
        ASSERT_EQ(file.substr(0, head.str().size()), head.str());
        std::size_t at = head.str().size();
        for (std::size_t sample = 0; sample < picture.samples.size(); ++sample) {
            if (sample % picture.channels == 3) {
                continue; // alpha is not there
            }
            unsigned value = static_cast<unsigned char>(file.at(at++));
            if (Depth(format) == 16) {
                value = value * 256 + static_cast<unsigned char>(file.at(at++));
            }
            ASSERT_EQ(value, picture.samples[sample]) << sample;
        }
        EXPECT_EQ(at, file.size());
    });
}

} // namespace
