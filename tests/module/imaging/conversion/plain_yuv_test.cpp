// plain_yuv_test.cpp - luma and chroma bytes to red, green and blue bytes
#include "imaging/pixel_format.h"
#include "tests/module/imaging/guarded_bytes.h"

#include <cmath>
#include <random>

using namespace pyxen;

namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint8_t ToByte(double value) {
    return static_cast<std::uint8_t>(std::trunc(std::fmin(std::fmax(value, 0.0), 255.0)));
}

void AppendPixel(Bytes& pixels, double y, double u, double v) {
    const double red = y + 1.40199958 * v - 179.4557903;
    const double green = y + 135.4587945 - (0.344135677 * u + 0.71413615 * v);
    const double blue = y + 1.77200007 * u - 226.816062;
    pixels.push_back(ToByte(red));
    pixels.push_back(ToByte(green));
    pixels.push_back(ToByte(blue));
}

struct Converter {
    const char* name;
    ConvertFunction convert;
    std::size_t groupPixels;
    std::size_t groupBytes;
    std::size_t u;
    std::size_t v;
    std::vector<std::size_t> y;
};

const std::vector<Converter>& Converters() {
    static const std::vector<Converter> converters = {
        {"ConvertYUV444", ConvertYUV444, 1, 3, 0, 2, {1}},
        {"ConvertYUV422", ConvertYUV422, 2, 4, 0, 2, {1, 3}},
        {"ConvertYUV411", ConvertYUV411, 4, 6, 0, 3, {1, 2, 4, 5}},
    };
    return converters;
}

Bytes Expected(const Converter& converter, const Bytes& source) {
    Bytes pixels;
    for (std::size_t start = 0; start < source.size(); start += converter.groupBytes) {
        for (const std::size_t y : converter.y) {
            AppendPixel(pixels, source[start + y], source[start + converter.u],
                        source[start + converter.v]);
        }
    }
    return pixels;
}

Bytes RandomYuv(std::size_t count) {
    std::mt19937 generator(static_cast<unsigned>(count) + 7);
    Bytes bytes(count);
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(generator());
    }
    return bytes;
}

TEST(YuvPixels, AreRightForEveryLengthAndNothingElseIsTouched) {
    for (const Converter& converter : Converters()) {
        for (std::size_t count = 0; count <= 70; ++count) {
            const std::size_t groups = count / converter.groupPixels;
            const Bytes source = RandomYuv(groups * converter.groupBytes);
            const ExactCopy input(source);
            GuardedBytes output(groups * converter.groupPixels * 3);
            converter.convert(input.Data(), output.Data(), count);
            EXPECT_EQ(output.Content(), Expected(converter, source))
                << converter.name << " " << count;
            EXPECT_TRUE(output.IsIntact()) << converter.name << " " << count;
        }
    }
}

TEST(YuvPixels, MayLieAtAnyAddress) {
    for (const Converter& converter : Converters()) {
        const Bytes source = RandomYuv(9 * converter.groupBytes);
        const std::size_t count = 9 * converter.groupPixels;
        for (std::size_t from = 0; from < 8; ++from) {
            for (std::size_t to = 0; to < 8; ++to) {
                GuardedBytes input(source.size(), from);
                std::memcpy(input.Data(), source.data(), source.size());
                GuardedBytes output(count * 3, to);
                converter.convert(input.Data(), output.Data(), count);
                EXPECT_EQ(output.Content(), Expected(converter, source));
                EXPECT_TRUE(output.IsIntact());
            }
        }
    }
}

TEST(YuvPixels, AreClampedAndTruncated) {
    const Bytes grey = {128, 0, 128, 128};
    Bytes pixels(6);
    ConvertYUV422(grey.data(), pixels.data(), 2);
    EXPECT_EQ(pixels, (Bytes{0, 0, 0, 128, 128, 127}));
    const Bytes extreme = {0, 255, 0, 0};
    ConvertYUV422(extreme.data(), pixels.data(), 2);
    EXPECT_EQ(pixels, (Bytes{75, 255, 28, 0, 135, 0}));
}

TEST(ConvertImage, ConvertsAWholeImageInOneGoWithoutRowAddress) {
    const PixelFormat& format = *FindPixelFormatByName("Mono12Packed");
    constexpr std::uint32_t kWidth = 3;
    constexpr std::uint32_t kHeight = 3;
    const Bytes source = RandomYuv(14);
    const ExactCopy input(source);
    GuardedBytes output(kWidth * kHeight * 2);
    ConvertImage(format, input.Data(), output.Data(), kWidth, kHeight);
    GuardedBytes whole(kWidth * kHeight * 2);
    Unpack12Packed(source.data(), whole.Data(), kWidth * kHeight);
    EXPECT_EQ(output.Content(), whole.Content());
    EXPECT_TRUE(output.IsIntact());
}

TEST(ConvertImage, ConvertsLineByLineWhereLinesArePadded) {
    for (const char* name : {"Mono10p", "BayerRG12p"}) {
        const PixelFormat& format = *FindPixelFormatByName(name);
        constexpr std::uint32_t kWidth = 7;
        constexpr std::uint32_t kHeight = 4;
        const std::size_t lineBytes = (std::size_t{kWidth} * format.bits + 7) / 8;
        const Bytes source = RandomYuv(lineBytes * kHeight);
        const ExactCopy input(source);
        GuardedBytes output(std::size_t{kWidth} * kHeight * 2);
        ConvertImage(format, input.Data(), output.Data(), kWidth, kHeight);
        GuardedBytes expected(std::size_t{kWidth} * kHeight * 2);
        for (std::size_t row = 0; row < kHeight; ++row) {
            format.convert(source.data() + row * lineBytes, expected.Data() + row * kWidth * 2,
                           kWidth);
        }
        EXPECT_EQ(output.Content(), expected.Content()) << name;
        EXPECT_TRUE(output.IsIntact()) << name;
    }
}

// Compatibility: the converter is called for as many values as the image is wide, whatever the
// number of components. Host lines are as long as the components need.
TEST(ConvertImage, ConvertsWidthValuesPerLineOfSeveralComponents) {
    const PixelFormat& format = *FindPixelFormatByName("RGB12p");
    constexpr std::uint32_t kWidth = 4;
    constexpr std::uint32_t kHeight = 2;
    const Bytes source = RandomYuv(kWidth * 12 / 8 * kHeight);
    const ExactCopy input(source);
    GuardedBytes output(kWidth * 3 * 2 * kHeight);
    const std::uint8_t untouched = output.Data()[0];
    ConvertImage(format, input.Data(), output.Data(), kWidth, kHeight);
    Bytes expected(output.Size(), untouched);
    Unpack12p(source.data(), expected.data(), kWidth);
    Unpack12p(source.data() + 6, expected.data() + kWidth * 3 * 2, kWidth);
    EXPECT_EQ(output.Content(), expected);
    EXPECT_TRUE(output.IsIntact());
}

TEST(ConvertImage, DoesNothingForAnEmptyImage) {
    const Bytes source(1);
    GuardedBytes output(0);
    ConvertImage(*FindPixelFormatByName("Mono10p"), source.data(), output.Data(), 0, 5);
    ConvertImage(*FindPixelFormatByName("Mono10p"), source.data(), output.Data(), 5, 0);
    ConvertImage(*FindPixelFormatByName("YUV422"), source.data(), output.Data(), 0, 5);
    EXPECT_TRUE(output.IsIntact());
}

} // namespace
