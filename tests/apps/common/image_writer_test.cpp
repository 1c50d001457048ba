// image_writer_test.cpp - tests of writing image files
#include "apps/common/image_writer.h"

#include "apps/common/command_failure.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <lodepng.h>

#include <cstring>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Words(const std::vector<std::uint16_t>& words) {
    Bytes bytes(words.size() * 2);
    std::memcpy(bytes.data(), words.data(), bytes.size());
    return bytes;
}

ImageLayout Layout(std::uint32_t width, std::uint32_t height, std::uint32_t components,
                   std::uint32_t bits, MV_COLORCODING coding) {
    return {width, height, components, bits > 8 ? 16u : 8u, bits, coding, 0, 0};
}

struct Png {
    unsigned width = 0;
    unsigned height = 0;
    LodePNGColorType colorType = LCT_GREY;
    unsigned bitDepth = 0;
    Bytes samples; // big-endian when two bytes each
};

class ImageWriterTest : public testing::Test {
protected:
    std::string Path(const char* name) const { return directory.PathOf(name); }
    std::string Write(const char* name, const ImageLayout& layout, const Bytes& data) {
        WriteImage(Path(name), layout, data.data());
        return directory.Read(name);
    }
    Png ReadPng(const char* name, const ImageLayout& layout, const Bytes& data) {
        const std::string file = Write(name, layout, data);
        lodepng::State state;
        state.decoder.color_convert = 0;
        Png png;
        const unsigned error =
            lodepng::decode(png.samples, png.width, png.height, state,
                            reinterpret_cast<const unsigned char*>(file.data()), file.size());
        EXPECT_EQ(error, 0u) << lodepng_error_text(error);
        png.colorType = state.info_raw.colortype;
        png.bitDepth = state.info_raw.bitdepth;
        return png;
    }
    void ExpectRefusal(const char* name, const ImageLayout& layout, const Bytes& data) {
        EXPECT_THROW(WriteImage(Path(name), layout, data.data()), CommandFailure) << name;
    }

    support::TemporaryDirectory directory;
};

TEST_F(ImageWriterTest, WritesRawBytesAsTheyAre) {
    EXPECT_EQ(Write("a.raw", Layout(2, 1, 1, 10, MVCC_MONO), {1, 2, 3, 4}),
              std::string("\1\2\3\4", 4));
    EXPECT_EQ(Write("a.RAW", Layout(2, 1, 1, 8, MVCC_MONO), {1, 2}), std::string("\1\2", 2));
}

TEST_F(ImageWriterTest, DescribesRawBytesBesideThem) {
    ImageLayout layout = Layout(2, 1, 1, 10, MVCC_RAW_CFA);
    layout.cfaX = 1;
    Write("a.RAW", layout, {1, 2, 3, 4});
    EXPECT_EQ(directory.Read("a.RAW.json"),
              "{\"schema\":1,\"layout\":{\"width\":2,\"height\":1,\"components\":1,"
              "\"allocatedBits\":16,\"bits\":10,\"colorCoding\":1,\"cfaX\":1,\"cfaY\":0}}\n");
    Write("a.png", layout, {1, 2, 3, 4});
    EXPECT_FALSE(platform::PathExists(Path("a.png.json")));
}

TEST_F(ImageWriterTest, WritesGreyOf8Bits) {
    const Png png = ReadPng("a.png", Layout(2, 2, 1, 8, MVCC_MONO), {0, 1, 128, 255});
    EXPECT_EQ(png.width, 2u);
    EXPECT_EQ(png.height, 2u);
    EXPECT_EQ(png.bitDepth, 8u);
    EXPECT_EQ(png.samples, (Bytes{0, 1, 128, 255}));
    EXPECT_EQ(Write("a.pgm", Layout(2, 2, 1, 8, MVCC_MONO), {0, 1, 128, 255}),
              std::string("P5\n2 2\n255\n\0\1\200\377", 15));
}

TEST_F(ImageWriterTest, ShiftsNarrowSamplesInPngAndKeepsThemInPgm) {
    const struct {
        std::uint32_t bits;
        std::uint16_t sample;
        Bytes inPng;
        const char* maximum;
    } cases[] = {{10, 0x03FF, {0xFF, 0xC0}, "1023"},
                 {12, 0x0ABC, {0xAB, 0xC0}, "4095"},
                 {14, 0x2001, {0x80, 0x04}, "16383"},
                 {16, 0x1234, {0x12, 0x34}, "65535"}};
    for (const auto& testCase : cases) {
        const ImageLayout layout = Layout(1, 1, 1, testCase.bits, MVCC_MONO);
        const Png png = ReadPng("a.png", layout, Words({testCase.sample}));
        EXPECT_EQ(png.bitDepth, 16u);
        EXPECT_EQ(png.samples, testCase.inPng) << testCase.bits;
        const char samples[] = {static_cast<char>(testCase.sample >> 8),
                                static_cast<char>(testCase.sample & 0xFF)};
        EXPECT_EQ(Write("a.pgm", layout, Words({testCase.sample})),
                  std::string("P5\n1 1\n") + testCase.maximum + "\n" + std::string(samples, 2));
    }
}

TEST_F(ImageWriterTest, IgnoresBitsThatAreNotSignificant) {
    const Png png = ReadPng("a.png", Layout(1, 1, 1, 12, MVCC_MONO), Words({0xF001}));
    EXPECT_EQ(png.samples, (Bytes{0x00, 0x10}));
}

TEST_F(ImageWriterTest, BringsEveryColourOrderToRedGreenBlue) {
    const struct {
        MV_COLORCODING coding;
        Bytes pixel;
    } cases[] = {{MVCC_RGB, {1, 2, 3}},
                 {MVCC_BGR, {3, 2, 1}},
                 {MVCC_RGBA, {1, 2, 3, 9}},
                 {MVCC_BGRA, {3, 2, 1, 9}},
                 {MVCC_ARGB, {9, 1, 2, 3}}};
    for (const auto& testCase : cases) {
        const auto components = static_cast<std::uint32_t>(testCase.pixel.size());
        const ImageLayout layout = Layout(1, 1, components, 8, testCase.coding);
        EXPECT_EQ(Write("a.ppm", layout, testCase.pixel), "P6\n1 1\n255\n\1\2\3")
            << testCase.coding;
        const Png png = ReadPng("a.png", layout, testCase.pixel);
        EXPECT_EQ(png.samples, components == 4 ? (Bytes{1, 2, 3, 9}) : (Bytes{1, 2, 3}))
            << testCase.coding;
        EXPECT_EQ(png.colorType, components == 4 ? LCT_RGBA : LCT_RGB);
    }
}

TEST_F(ImageWriterTest, WritesColourOfMoreThan8Bits) {
    const ImageLayout layout = Layout(1, 1, 3, 10, MVCC_BGR);
    EXPECT_EQ(Write("a.ppm", layout, Words({0x3FF, 0x002, 0x100})),
              std::string("P6\n1 1\n1023\n\1\0\0\2\3\377", 18));
    EXPECT_EQ(ReadPng("a.png", layout, Words({0x3FF, 0x002, 0x100})).samples,
              (Bytes{0x40, 0x00, 0x00, 0x80, 0xFF, 0xC0}));
}

TEST_F(ImageWriterTest, WritesGreyThreeTimesIntoPpm) {
    EXPECT_EQ(Write("a.ppm", Layout(2, 1, 1, 8, MVCC_MONO), {7, 8}),
              "P6\n2 1\n255\n\7\7\7\10\10\10");
}

TEST_F(ImageWriterTest, WritesAColourFilterImageAsMosaicOrInColour) {
    const ImageLayout layout = Layout(2, 2, 1, 8, MVCC_RAW_CFA);
    const Bytes mosaic{10, 200, 30, 12};
    EXPECT_EQ(Write("a.pgm", layout, mosaic), std::string("P5\n2 2\n255\n\12\310\36\14", 15));
    EXPECT_EQ(Write("a.pnm", layout, mosaic), std::string("P5\n2 2\n255\n\12\310\36\14", 15));
    const Png png = ReadPng("a.png", layout, mosaic);
    EXPECT_EQ(png.colorType, LCT_RGB);
    // Green and red above, blue and green below: all pixels share the one red and the one blue
    // sample.
    EXPECT_EQ(png.samples, (Bytes{200, 10, 30, 200, 11, 30, 200, 11, 30, 200, 12, 30}));
}

TEST_F(ImageWriterTest, ChoosesTheKindOfPnmByTheComponents) {
    EXPECT_EQ(Write("a.pnm", Layout(1, 1, 1, 8, MVCC_MONO), {5}).substr(0, 2), "P5");
    EXPECT_EQ(Write("a.pnm", Layout(1, 1, 3, 8, MVCC_RGB), {5, 6, 7}).substr(0, 2), "P6");
}

TEST_F(ImageWriterTest, RefusesWhatCannotBeShown) {
    ExpectRefusal("a.pgm", Layout(1, 1, 3, 8, MVCC_RGB), {1, 2, 3});
    ExpectRefusal("a.jpg", Layout(1, 1, 1, 8, MVCC_MONO), {1});
    ExpectRefusal("noending", Layout(1, 1, 1, 8, MVCC_MONO), {1});
    ExpectRefusal("a.png", Layout(0, 1, 1, 8, MVCC_MONO), {1});
    ExpectRefusal("a.png", Layout(1, 1, 2, 8, MVCC_MONO), {1, 2});
    ExpectRefusal("a.png", Layout(1, 1, 1, 0, MVCC_MONO), {1});
    ExpectRefusal("missing/a.png", Layout(1, 1, 1, 8, MVCC_MONO), {1});
}

TEST_F(ImageWriterTest, TellsFormatsByTheEnding) {
    EXPECT_EQ(ImageFileFormatOf("a.TIFF"), ImageFileFormat::kTiff);
    EXPECT_EQ(ImageFileFormatOf("b.tif"), ImageFileFormat::kTiff);
    EXPECT_EQ(ImageFileFormatOf("a.tif/b.Png"), ImageFileFormat::kPng);
    EXPECT_EQ(ImageFileFormatOf("tif"), ImageFileFormat::kUnknown);
}

TEST_F(ImageWriterTest, KnowsFileNamesByTheirEnding) {
    for (const char* name :
         {"a.png", "a.PNG", "a.tif", "a.TIFF", "a.b.pgm", "a.ppm", "a.pnm", "dir/.raw"}) {
        EXPECT_EQ(ImageFileNameProblem(name), "") << name;
    }
    for (const char* name : {"a", "png", "a.jpg", "a.png.bak", ""}) {
        EXPECT_NE(ImageFileNameProblem(name), "") << name;
    }
}

} // namespace
