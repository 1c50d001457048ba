// pixel_formats_test.cpp - the bit layout of every format, against packing written here in another
// way

#include "tests/pxnc/simulator/simulator_fixture.h"

#include "pxnc/simulator/pattern.h"
#include "pxnc/simulator/pixel_formats.h"

#include <cmath>
#include <cstring>

namespace simulator_tests {
namespace {

using pxsim::Layout;
using pxsim::Order;
using pxsim::PixelFormat;

// Collects bits from the lowest up, as the naming convention counts them.
class BitWriter {
public:
    void Add(unsigned value, unsigned bits) {
        for (unsigned bit = 0; bit < bits; ++bit) {
            if (position % 8 == 0) {
                bytes.push_back(0);
            }
            if (((value >> bit) & 1) != 0) {
                bytes.back() = static_cast<std::uint8_t>(bytes.back() | (1u << (position % 8)));
            }
            ++position;
        }
    }
    void PadToByte() { position = (position + 7) / 8 * 8; }
    std::vector<std::uint8_t> bytes;

private:
    std::size_t position = 0;
};

struct Pixel {
    unsigned red, green, blue, mono;
};

// The default pattern at a sensor position, reduced to the format's bits.
Pixel PixelAt(unsigned x, unsigned line, unsigned bits) {
    const auto ramp = [&](unsigned position) {
        const unsigned eight = position % 256;
        return (eight * 257) >> (16 - bits);
    };
    return {ramp(x + line), ramp(x + line + 85), ramp(x + line + 170), ramp(x + line)};
}

unsigned BayerValue(const std::string& tile, unsigned x, unsigned y, const Pixel& pixel) {
    // The four letters of the tile from the two that name it.
    const std::string tiles = tile == "RG"   ? "RGGB"
                              : tile == "GR" ? "GRBG"
                              : tile == "GB" ? "GBRG"
                                             : "BGGR";
    switch (tiles[(y % 2) * 2 + x % 2]) {
    case 'R':
        return pixel.red;
    case 'G':
        return pixel.green;
    default:
        return pixel.blue;
    }
}

std::vector<unsigned> Components(const std::string& name, unsigned x, unsigned y,
                                 const Pixel& pixel, unsigned bits) {
    const unsigned opaque = (1u << bits) - 1;
    if (name.starts_with("Mono")) {
        return {pixel.mono};
    }
    if (name.starts_with("Bayer")) {
        return {BayerValue(name.substr(5, 2), x, y, pixel)};
    }
    if (name.starts_with("Argb")) {
        return {opaque, pixel.red, pixel.green, pixel.blue};
    }
    const bool bgr = name.starts_with("BGR") || name.starts_with("Bgr");
    std::vector<unsigned> values = bgr ? std::vector<unsigned>{pixel.blue, pixel.green, pixel.red}
                                       : std::vector<unsigned>{pixel.red, pixel.green, pixel.blue};
    if (name[3] == 'a') {
        values.push_back(opaque);
    }
    return values;
}

std::vector<std::uint8_t> ExpectedLine(const PixelFormat& format, unsigned width, unsigned y,
                                       unsigned line) {
    const std::string name = format.name;
    std::vector<unsigned> values;
    for (unsigned x = 0; x < width; ++x) {
        const Pixel pixel = PixelAt(x, line, format.bits);
        for (const unsigned value : Components(name, x, y, pixel, format.bits)) {
            values.push_back(value);
        }
    }
    BitWriter out;
    if (name.ends_with("10Packed") || name.ends_with("12Packed")) {
        const unsigned low = format.bits - 8;
        for (std::size_t i = 0; i < values.size(); i += 2) {
            out.Add(values[i] >> low, 8);
            out.Add(values[i] & ((1u << low) - 1), 4);
            out.Add(values[i + 1] & ((1u << low) - 1), 4);
            out.Add(values[i + 1] >> low, 8);
        }
        return out.bytes;
    }
    unsigned step = format.bits;
    if (!name.ends_with("p")) {
        step = format.bits == 8 ? 8 : 16;
    }
    for (const unsigned value : values) {
        out.Add(value, step);
    }
    return out.bytes;
}

// The red, green and blue of a full-range YUV pixel.
Pixel FromYuv(double u, double y, double v) {
    const auto clamp = [](double value) {
        return static_cast<unsigned>(std::lround(std::fmin(255, std::fmax(0, value))));
    };
    return {clamp(y + 1.402 * (v - 128)), clamp(y - 0.344136 * (u - 128) - 0.714136 * (v - 128)),
            clamp(y + 1.772 * (u - 128)), 0};
}

class PixelFormatTest : public SimulatorTest,
                        public testing::WithParamInterface<const PixelFormat*> {
protected:
    static constexpr unsigned kWidth = 64;
    static constexpr unsigned kHeight = 16;

    void SetUp() override {
        SimulatorTest::SetUp();
        camera = Open(kGigECamera);
        ASSERT_EQ(PxnFeatureIntSet(camera, "Width", kWidth), 0);
        ASSERT_EQ(PxnFeatureIntSet(camera, "Height", kHeight), 0);
        ASSERT_EQ(PxnFeatureEnumSet(camera, "PixelFormat", GetParam()->name), 0);
        ASSERT_EQ(PxnFeatureIntSet(camera, "OffsetX", 0), 0);
    }
    void TearDown() override {
        EXPECT_EQ(PxnCameraClose(camera), 0);
        SimulatorTest::TearDown();
    }

    PxnHandle camera = nullptr;
};

TEST_P(PixelFormatTest, CodeAndSizesAgree) {
    const PixelFormat& format = *GetParam();
    std::int64_t code = 0;
    ASSERT_EQ(PxnFeatureEnumAsInt(camera, "PixelFormat", format.name, &code), 0);
    EXPECT_NE(code, 0);
    const unsigned bitsPerPixel = (static_cast<unsigned>(code) >> 16) & 0xFF;
    EXPECT_EQ(GetInt(camera, "PixelSize"), bitsPerPixel);
    EXPECT_EQ(GetInt(camera, "PayloadSize"), (kWidth * bitsPerPixel + 7) / 8 * kHeight);
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    EXPECT_EQ(buffers[0].frame.pixelFormat, static_cast<std::uint32_t>(code));
    EXPECT_EQ(buffers[0].frame.imageSize, buffers[0].memory.size());
    EXPECT_EQ(buffers[0].frame.imageData, buffers[0].memory.data());
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
}

TEST_P(PixelFormatTest, EveryByteIsWhereTheLayoutPutsIt) {
    const PixelFormat& format = *GetParam();
    std::vector<Buffer> buffers = Announce(camera, 1);
    Snap(camera, buffers[0]);
    const std::vector<std::uint8_t>& memory = buffers[0].memory;
    const std::size_t pitch = memory.size() / kHeight;
    const auto frame = static_cast<unsigned>(buffers[0].frame.frameId);
    const std::string name = format.name;
    const unsigned scroll = name.starts_with("Bayer") ? 2 * frame : frame;
    for (unsigned y = 0; y < kHeight; ++y) {
        const std::uint8_t* line = memory.data() + y * pitch;
        if (!name.starts_with("YUV")) {
            const std::vector<std::uint8_t> expected = ExpectedLine(format, kWidth, y, y + scroll);
            ASSERT_EQ(expected.size(), pitch);
            ASSERT_EQ(std::memcmp(line, expected.data(), pitch), 0) << name << " line " << y;
            continue;
        }
        // Back from the layout to colours: each group shares U and V, so only its mean is exact.
        const unsigned group = name.starts_with("YUV444") ? 1 : name.starts_with("YUV422") ? 2 : 4;
        for (unsigned x = 0; x < kWidth; x += group) {
            const std::uint8_t* in = line + x / group * (group + 2);
            const unsigned beforeV = (group + 1) / 2;
            const double u = in[0];
            const double v = in[1 + beforeV];
            for (unsigned i = 0; i < group; ++i) {
                const double luma = i < beforeV ? in[1 + i] : in[2 + i];
                const Pixel expected = PixelAt(x + i, y + scroll, 8);
                const double exact =
                    0.299 * expected.red + 0.587 * expected.green + 0.114 * expected.blue;
                ASSERT_NEAR(luma, exact, 0.51) << name << " x " << x + i << " y " << y;
                if (group == 1) {
                    const Pixel back = FromYuv(u, luma, v);
                    ASSERT_NEAR(back.red, expected.red, 2);
                    ASSERT_NEAR(back.green, expected.green, 2);
                    ASSERT_NEAR(back.blue, expected.blue, 2);
                }
            }
            double meanU = 0;
            double meanV = 0;
            for (unsigned i = 0; i < group; ++i) {
                const Pixel one = PixelAt(x + i, y + scroll, 8);
                meanU += 128 - 0.168736 * one.red - 0.331264 * one.green + 0.5 * one.blue;
                meanV += 128 + 0.5 * one.red - 0.418688 * one.green - 0.081312 * one.blue;
            }
            ASSERT_NEAR(u, meanU / group, 1.6) << name << " x " << x << " y " << y;
            ASSERT_NEAR(v, meanV / group, 1.6) << name << " x " << x << " y " << y;
        }
    }
    EXPECT_EQ(PxnFrameRevokeAll(camera), 0);
}

std::vector<const PixelFormat*> Everything() {
    std::vector<const PixelFormat*> formats;
    for (const PixelFormat& format : pxsim::AllPixelFormats()) {
        formats.push_back(&format);
    }
    return formats;
}

INSTANTIATE_TEST_SUITE_P(AllFormats, PixelFormatTest, testing::ValuesIn(Everything()),
                         [](const auto& one) { return std::string(one.param->name); });

TEST(PixelFormatTableTest, HoldsSeventySixFormats) {
    EXPECT_EQ(pxsim::AllPixelFormats().size(), 76u);
}

} // namespace
} // namespace simulator_tests
