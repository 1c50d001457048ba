// yuv_exactness_test.cpp - YUV to RGB follows the formulas to the last bit, whatever the input
#include "tests/module/imaging/converter_layouts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

using namespace pyxen;

namespace {

std::uint8_t ToByte(double value) {
    if (value <= 0) {
        return 0;
    }
    return value >= 255 ? 255 : static_cast<std::uint8_t>(std::trunc(value));
}

// All lumas with one pair of chromas.
struct Expectation {
    std::uint8_t rgb[256][3];

    void Fill(double u, double v) {
        for (int luma = 0; luma < 256; ++luma) {
            const double y = luma;
            rgb[luma][0] = ToByte(y + 1.40199958 * v - 179.4557903);
            rgb[luma][1] = ToByte(y + 135.4587945 - (0.344135677 * u + 0.71413615 * v));
            rgb[luma][2] = ToByte(y + 1.77200007 * u - 226.816062);
        }
    }
};

// At its place in a group, luma runs through all values; every place begins with another one.
constexpr unsigned LumaAt(unsigned step, unsigned place) {
    return (step + place * 77) % 256;
}

constexpr unsigned kSteps = 256;

struct Layout {
    const char* name;
    ConvertFunction ConverterSet::*converter;
    unsigned groupBytes;
    unsigned u;
    unsigned v;
    unsigned lumas;
    unsigned y[4];
};

constexpr Layout kLayouts[] = {
    {"YUV444", &ConverterSet::convertYUV444, 3, 0, 2, 1, {1}},
    {"YUV422", &ConverterSet::convertYUV422, 4, 0, 2, 2, {1, 3}},
    {"YUV411", &ConverterSet::convertYUV411, 6, 0, 3, 4, {1, 2, 4, 5}},
};

// One layout with all lumas at all places.
struct Image {
    const Layout& layout;
    std::uint8_t source[kSteps * 6];
    std::uint8_t expected[kSteps * 12];
    std::uint8_t pixels[kSteps * 12];

    explicit Image(const Layout& imageLayout) : layout(imageLayout) {
        for (unsigned step = 0; step < kSteps; ++step) {
            for (unsigned place = 0; place < layout.lumas; ++place) {
                source[step * layout.groupBytes + layout.y[place]] =
                    static_cast<std::uint8_t>(LumaAt(step, place));
            }
        }
    }

    void SetChroma(unsigned u, unsigned v, const Expectation& expectation) {
        std::uint8_t* pixel = expected;
        for (unsigned step = 0; step < kSteps; ++step) {
            source[step * layout.groupBytes + layout.u] = static_cast<std::uint8_t>(u);
            source[step * layout.groupBytes + layout.v] = static_cast<std::uint8_t>(v);
            for (unsigned place = 0; place < layout.lumas; ++place, pixel += 3) {
                std::memcpy(pixel, expectation.rgb[LumaAt(step, place)], 3);
            }
        }
    }

    bool IsRight(const ConverterSet& set) {
        (set.*layout.converter)(source, pixels, kSteps * layout.lumas);
        return std::memcmp(pixels, expected, kSteps * layout.lumas * 3) == 0;
    }
};

TEST(YuvExactness, HoldsForEveryInputAtEveryPlaceOnEveryPath) {
    static Expectation expectation;
    static Image images[] = {Image(kLayouts[0]), Image(kLayouts[1]), Image(kLayouts[2])};
    for (unsigned u = 0; u < 256; ++u) {
        for (unsigned v = 0; v < 256; ++v) {
            expectation.Fill(u, v);
            for (Image& image : images) {
                image.SetChroma(u, v, expectation);
                for (const ConverterSet* set : UsableConverterSets()) {
                    ASSERT_TRUE(image.IsRight(*set))
                        << set->name << " " << image.layout.name << " u " << u << " v " << v;
                }
            }
        }
    }
}

// Compatibility: the blue of a neutral grey is one less than its luma.
TEST(YuvExactness, GivesNeutralGreyOneBlueLess) {
    for (const ConverterSet* set : UsableConverterSets()) {
        static Image image(kLayouts[0]);
        image.SetChroma(128, 128, Expectation{});
        (set->convertYUV444)(image.source, image.pixels, kSteps);
        for (unsigned luma = 0; luma < 256; ++luma) {
            ASSERT_EQ(image.pixels[luma * 3], luma) << set->name;
            ASSERT_EQ(image.pixels[luma * 3 + 1], luma) << set->name;
            ASSERT_EQ(image.pixels[luma * 3 + 2], luma == 0 ? 0 : luma - 1) << set->name;
        }
    }
}

} // namespace
