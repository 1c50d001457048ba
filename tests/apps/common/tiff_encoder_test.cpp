// tiff_encoder_test.cpp - tests of the form in which TIFF files hold images
#include "apps/common/tiff_encoder.h"

#include "apps/common/command_failure.h"
#include "apps/common/whole_file.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/tiff_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

using support::TiffPageContent;
using TiffBytes = std::vector<std::uint8_t>;
using TiffSamples = std::vector<std::uint16_t>;

class TiffEncoder : public testing::Test {
protected:
    TiffPageContent Written(const ImageLayout& layout, const void* image, bool deflate = false) {
        EncodedFrame frame;
        EncodeTiff(layout, image, deflate, frame);
        bytes = frame.head.size() + frame.pixelBytes + frame.tail.size();
        WriteEncodedFrame(path, frame);
        const auto pages = support::ReadTiffPages(path);
        EXPECT_EQ(pages.size(), 1u);
        return pages.empty() ? TiffPageContent{} : pages.front();
    }

    support::TemporaryDirectory directory;
    const std::string path = directory.PathOf("image.tiff");
    std::size_t bytes = 0; ///< of the last file
};

TEST_F(TiffEncoder, HoldsTrueValuesOfGrey) {
    const TiffBytes narrow{0, 1, 128, 255, 7, 9};
    const TiffPageContent grey = Written({3, 2, 1, 8, 8, MVCC_MONO, 0, 0}, narrow.data());
    EXPECT_EQ(grey.width, 3u);
    EXPECT_EQ(grey.height, 2u);
    EXPECT_EQ(grey.bits, 8);
    EXPECT_EQ(grey.channels, 1);
    EXPECT_EQ(grey.photometric, PHOTOMETRIC_MINISBLACK);
    EXPECT_EQ(grey.compression, COMPRESSION_NONE);
    EXPECT_EQ(grey.mostOfSample, 255);
    EXPECT_EQ(grey.samples, (TiffSamples{0, 1, 128, 255, 7, 9}));
    EXPECT_EQ(grey.description, "{\"significantBits\":8,\"colorFilter\":null}");
    for (const std::uint32_t bits : {10u, 12u, 14u, 16u}) {
        const auto most = static_cast<std::uint16_t>((1u << bits) - 1);
        const TiffSamples wide{0, most, 1, 0x0102};
        const TiffPageContent page = Written({2, 2, 1, 16, bits, MVCC_MONO, 0, 0}, wide.data());
        EXPECT_EQ(page.bits, 16);
        EXPECT_EQ(page.mostOfSample, most);
        EXPECT_EQ(page.samples, wide);
        EXPECT_EQ(page.description,
                  "{\"significantBits\":" + std::to_string(bits) + ",\"colorFilter\":null}");
    }
}

TEST_F(TiffEncoder, DoesNotCopyWhatCanBeWrittenAsItStands) {
    EncodedFrame frame;
    const TiffSamples image(64, 0x0FFF);
    EncodeTiff({8, 8, 1, 16, 12, MVCC_MONO, 0, 0}, image.data(), false, frame);
    EXPECT_EQ(static_cast<const void*>(frame.pixels), image.data());
    EncodeTiff({8, 8, 1, 16, 11, MVCC_MONO, 0, 0}, image.data(), false, frame);
    EXPECT_NE(static_cast<const void*>(frame.pixels), image.data()) << "a bit too much is set";
    EXPECT_EQ(Written({8, 8, 1, 16, 11, MVCC_MONO, 0, 0}, image.data()).samples,
              TiffSamples(64, 0x07FF));
}

TEST_F(TiffEncoder, BringsColoursInOrder) {
    const TiffBytes colours{9, 1, 2, 3};
    const TiffPageContent alpha = Written({1, 1, 4, 8, 8, MVCC_ARGB, 0, 0}, colours.data());
    EXPECT_EQ(alpha.channels, 4);
    EXPECT_EQ(alpha.extraSamples, 1);
    EXPECT_EQ(alpha.photometric, PHOTOMETRIC_RGB);
    EXPECT_EQ(alpha.samples, (TiffSamples{1, 2, 3, 9}));
    const TiffPageContent turned = Written({1, 1, 3, 8, 8, MVCC_BGR, 0, 0}, colours.data());
    EXPECT_EQ(turned.channels, 3);
    EXPECT_EQ(turned.extraSamples, 0);
    EXPECT_EQ(turned.samples, (TiffSamples{2, 1, 9}));
}

TEST_F(TiffEncoder, DescribesTheMosaicOfAColourFilter) {
    const TiffBytes mosaic{1, 2, 3, 4};
    const struct {
        std::uint32_t x;
        std::uint32_t y;
        const char* pattern;
    } filters[] = {{0, 0, "GRBG"}, {1, 0, "RGGB"}, {0, 1, "BGGR"}, {1, 1, "GBRG"}};
    for (const auto& filter : filters) {
        const TiffPageContent page =
            Written({2, 2, 1, 8, 8, MVCC_RAW_CFA, filter.x, filter.y}, mosaic.data());
        EXPECT_EQ(page.photometric, PHOTOMETRIC_MINISBLACK);
        EXPECT_EQ(page.samples, (TiffSamples{1, 2, 3, 4}));
        EXPECT_EQ(page.description, std::string("{\"significantBits\":8,\"colorFilter\":\"") +
                                        filter.pattern + "\"}");
    }
}

TEST_F(TiffEncoder, CompressesWithoutLoss) {
    // More than one strip, the last of them shorter.
    const ImageLayout layouts[] = {{700, 501, 1, 8, 8, MVCC_MONO, 0, 0},
                                   {700, 501, 1, 16, 12, MVCC_RAW_CFA, 1, 0},
                                   {701, 301, 3, 16, 10, MVCC_BGR, 0, 0},
                                   {301, 301, 4, 8, 8, MVCC_RGBA, 0, 0}};
    for (const ImageLayout& layout : layouts) {
        TiffBytes image(static_cast<std::size_t>(layout.Size()));
        const std::size_t samples = image.size() * 8 / layout.allocatedBits;
        for (std::size_t at = 0; at < samples; ++at) {
            const auto value = static_cast<std::uint16_t>((at / layout.components % layout.width) &
                                                          ((1u << layout.bits) - 1));
            std::memcpy(image.data() + at * layout.allocatedBits / 8, &value,
                        layout.allocatedBits / 8);
        }
        const TiffPageContent plain = Written(layout, image.data());
        const std::size_t plainBytes = bytes;
        const TiffPageContent compressed = Written(layout, image.data(), true);
        EXPECT_EQ(compressed.compression, COMPRESSION_ADOBE_DEFLATE);
        EXPECT_EQ(compressed.predictor,
                  layout.colorCoding == MVCC_RAW_CFA ? PREDICTOR_NONE : PREDICTOR_HORIZONTAL);
        EXPECT_TRUE(compressed.samples == plain.samples) << layout.bits;
        EXPECT_LT(bytes, plainBytes / 10) << layout.bits;
    }
}

TEST_F(TiffEncoder, RefusesWhatCannotBeShown) {
    EncodedFrame frame;
    const TiffBytes image(64);
    EXPECT_THROW(EncodeTiff({0, 1, 1, 8, 8, MVCC_MONO, 0, 0}, image.data(), false, frame),
                 CommandFailure);
    EXPECT_THROW(EncodeTiff({1, 1, 2, 8, 8, MVCC_MONO, 0, 0}, image.data(), false, frame),
                 CommandFailure);
}

TEST_F(TiffEncoder, TellsWhereAPageLies) {
    const ImageLayout layout{3, 1, 1, 8, 8, MVCC_MONO, 0, 0};
    const TiffBytes image{1, 2, 3};
    EncodedFrame strips;
    EncodeTiffStrips(layout, image.data(), false, strips);
    for (const bool isBig : {false, true}) {
        const std::uint64_t start = 1000;
        const TiffPage page = TiffPageOf(layout, strips, false, isBig, start);
        EXPECT_EQ(page.header.size(), TiffHeaderBytes(isBig));
        EXPECT_EQ(page.directory, start + 4) << "directories begin at even offsets";
        ASSERT_GT(page.nextDirectory, page.directory);
        const std::size_t link = page.nextDirectory - (start + 3);
        ASSERT_LE(link + (isBig ? 8 : 4), page.tail.size());
        EXPECT_TRUE(
            std::all_of(page.tail.begin() + static_cast<std::ptrdiff_t>(link),
                        page.tail.begin() + static_cast<std::ptrdiff_t>(link) + (isBig ? 8 : 4),
                        [](std::uint8_t byte) { return byte == 0; }));
    }
    const std::uint64_t behind = 0xFFFFFFFF;
    EXPECT_EQ(TiffPageOf(layout, strips, false, true, behind).directory, behind + 3);
    EXPECT_THROW(TiffPageOf(layout, strips, false, false, behind), CommandFailure);
}

TEST_F(TiffEncoder, WantsLongOffsetsWhenAFileMayBeLong) {
    constexpr std::uint64_t kFrame = 4096 * 3000 * 2;
    EXPECT_FALSE(MayWantBigTiff(1, kFrame));
    EXPECT_FALSE(MayWantBigTiff(174, kFrame));
    EXPECT_TRUE(MayWantBigTiff(175, kFrame));
    EXPECT_TRUE(MayWantBigTiff(1, 0xFFFFFFFF));
    EXPECT_TRUE(MayWantBigTiff(2000000, 1));
}

} // namespace
