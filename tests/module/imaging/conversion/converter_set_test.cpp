// converter_set_test.cpp - every instruction set gives what the plain loops give
#include "platform/processor.h"
#include "tests/module/imaging/converter_layouts.h"
#include "tests/support/guarded_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace pyxen;

namespace {

using Bytes = std::vector<std::uint8_t>;

// The longest block has 256 pixels. Up to kFewPixels every number is tried, then those with several
// of the longest blocks and every rest.
constexpr std::size_t kFewPixels = 420;
constexpr std::size_t kManyPixels = 768;
constexpr std::size_t kMostPixels = kManyPixels + 260;

std::size_t NextNumber(std::size_t pixels) {
    return pixels == kFewPixels ? kManyPixels : pixels + 1;
}

// Those that write past the cache among them.
std::vector<const ConverterSet*> AllUsableSets() {
    std::vector<const ConverterSet*> sets;
    for (const ConverterSet* set : UsableConverterSets()) {
        sets.push_back(set);
        if (set->streaming) {
            sets.push_back(set->streaming);
        }
    }
    return sets;
}

const Bytes& RandomBytes() {
    static const Bytes random = [] {
        std::mt19937 generator(20);
        Bytes bytes(kMostPixels * 3);
        std::generate(bytes.begin(), bytes.end(),
                      [&] { return static_cast<std::uint8_t>(generator()); });
        return bytes;
    }();
    return random;
}

class ConverterSets : public testing::TestWithParam<const ConverterSet*> {
protected:
    // Converts the same pixels at other addresses with the plain loop and with the tested set.
    void Check(const ConverterLayout& layout, std::size_t pixels, std::uint8_t* source,
               std::uint8_t* destination) {
        const std::size_t sourceBytes = layout.SourceBytes(pixels);
        const std::size_t destinationBytes = layout.DestinationBytes(pixels);
        std::memcpy(source, RandomBytes().data(), sourceBytes);
        std::memset(destination, 0xEE, destinationBytes);
        expected.resize(kMostPixels * 3);
        (kPlainConverters.*layout.converter)(RandomBytes().data(), expected.data(), pixels);
        (GetParam()->*layout.converter)(source, destination, pixels);
        ASSERT_EQ(std::memcmp(destination, expected.data(), destinationBytes), 0)
            << layout.name << ", " << pixels << " pixels";
        ASSERT_EQ(std::memcmp(source, RandomBytes().data(), sourceBytes), 0);
    }

    Bytes expected;
};

TEST_P(ConverterSets, ReadAndWriteNothingBehindTheLastPixel) {
    const GuardedPages source(kMostPixels * 3);
    const GuardedPages destination(kMostPixels * 3);
    for (const ConverterLayout& layout : kConverterLayouts) {
        for (std::size_t pixels = 0; pixels <= kMostPixels; pixels = NextNumber(pixels)) {
            ASSERT_NO_FATAL_FAILURE(Check(layout, pixels, source.End() - layout.SourceBytes(pixels),
                                          destination.End() - layout.DestinationBytes(pixels)));
        }
    }
}

TEST_P(ConverterSets, ReadAndWriteNothingBeforeTheFirstPixel) {
    const GuardedPages source(kMostPixels * 3);
    const GuardedPages destination(kMostPixels * 3);
    for (const ConverterLayout& layout : kConverterLayouts) {
        for (std::size_t pixels = 0; pixels <= kMostPixels; pixels = NextNumber(pixels)) {
            ASSERT_NO_FATAL_FAILURE(Check(layout, pixels, source.Begin(), destination.Begin()));
        }
    }
}

TEST_P(ConverterSets, WriteOnlyTheirPixelsAtAnyAddress) {
    constexpr std::size_t kMargin = 64;
    Bytes source(kMostPixels * 3 + kMargin);
    Bytes destination(kMostPixels * 3 + 3 * kMargin);
    for (const ConverterLayout& layout : kConverterLayouts) {
        for (std::size_t shift = 0; shift < kMargin; ++shift) {
            for (const std::size_t pixels :
                 {std::size_t{63}, std::size_t{128}, 199 + shift, 840 + shift}) {
                const std::size_t begin = kMargin + shift;
                const std::size_t bytes = layout.DestinationBytes(pixels);
                std::fill(destination.begin(), destination.end(), std::uint8_t{0xA5});
                ASSERT_NO_FATAL_FAILURE(Check(layout, pixels, source.data() + shift * 7 % kMargin,
                                              destination.data() + begin));
                for (std::size_t at = 0; at < destination.size(); ++at) {
                    if (at < begin || at >= begin + bytes) {
                        ASSERT_EQ(destination[at], 0xA5) << layout.name << " " << at;
                    }
                }
            }
        }
    }
}

std::string SetName(const testing::TestParamInfo<const ConverterSet*>& set) {
    std::string name = set.param->name;
    std::erase_if(name, [](char c) { return c == '.' || c == '-' || c == ',' || c == ' '; });
    return name;
}

INSTANTIATE_TEST_SUITE_P(, ConverterSets, testing::ValuesIn(AllUsableSets()), SetName);

TEST(ConverterChoice, FollowsWhatTheProcessorHas) {
    const auto sets = UsableConverterSets();
    const std::size_t expected =
        1u + platform::HasSse41() + platform::HasAvx2() + platform::HasAvx512Vbmi();
    ASSERT_EQ(sets.size(), expected);
    EXPECT_EQ(sets.front(), &kPlainConverters);
    EXPECT_EQ(&ActiveConverterSet(), sets.back());
}

class ForcedConverters : public testing::Test {
protected:
    ~ForcedConverters() override { ForceConverterSet(nullptr); }
};

void MarkTenPixels(const void*, void* destination, std::uint64_t pixelCount) {
    std::memset(destination, static_cast<int>(pixelCount), 10);
}

TEST_F(ForcedConverters, ServeEveryConversionUntilTheChoiceIsGivenBack) {
    const ConverterSet marking = {"marking",     MarkTenPixels, MarkTenPixels, MarkTenPixels,
                                  MarkTenPixels, MarkTenPixels, MarkTenPixels, MarkTenPixels};
    const ConvertFunction converters[] = {Unpack10p,      Unpack12p,     Unpack10Packed,
                                          Unpack12Packed, ConvertYUV422, ConvertYUV444,
                                          ConvertYUV411};
    const Bytes source(64);
    ForceConverterSet(&marking);
    EXPECT_EQ(&ActiveConverterSet(), &marking);
    for (const ConvertFunction convert : converters) {
        Bytes destination(10);
        convert(source.data(), destination.data(), 8);
        EXPECT_EQ(destination, Bytes(10, 8));
    }
    for (const ConvertFunction convert : converters) {
        EXPECT_EQ(StreamingConverter(convert), nullptr);
    }
    ConverterSet marksToo = marking;
    ConverterSet both = marking;
    both.streaming = &marksToo;
    ForceConverterSet(&both);
    for (const ConvertFunction convert : converters) {
        EXPECT_EQ(StreamingConverter(convert), &MarkTenPixels);
    }
    EXPECT_EQ(StreamingConverter(&MarkTenPixels), nullptr); // none of the table's
    ForceConverterSet(nullptr);
    EXPECT_EQ(&ActiveConverterSet(), UsableConverterSets().back());
    std::uint16_t pixels[4] = {1, 1, 1, 1};
    Unpack12p(source.data(), pixels, 4);
    EXPECT_EQ(pixels[0], 0);
}

TEST_F(ForcedConverters, GiveTheSameImageOnEveryPath) {
    const PixelFormat& format = *FindPixelFormatByName("Mono10p");
    Bytes first;
    for (const ConverterSet* set : UsableConverterSets()) {
        ForceConverterSet(set);
        for (const Stores stores : {Stores::kOrdinary, Stores::kStreaming}) {
            Bytes image(61 * 13 * 2);
            ConvertRows(format, RandomBytes().data(), image.data(), 61, 0, 13, stores);
            if (first.empty()) {
                first = image;
            }
            EXPECT_EQ(image, first) << set->name;
        }
    }
}

} // namespace
