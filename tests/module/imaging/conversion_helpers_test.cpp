// conversion_helpers_test.cpp - images that several threads convert
#include "imaging/conversion_helpers.h"

#include "platform/event.h"
#include "platform/processor.h"
#include "tests/support/guarded_pages.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

using ImageBytes = std::vector<std::uint8_t>;

constexpr const char* kConvertedFormats[] = {"Mono10p", "Mono12p",  "Mono10Packed", "Mono12Packed",
                                             "BGRa10p", "YUV444_8", "YUV422_8",     "YUV411_8"};

const PixelFormat& ConvertedFormat(const char* name) {
    return *FindPixelFormatByName(name);
}

// What converters read at most, lines padded.
std::size_t RawBytes(const PixelFormat& format, std::size_t width, std::size_t height) {
    return (width * (format.code >> 16 & 0xFF) + 7) / 8 * height;
}

// From one line to the next where no line is padded.
std::size_t RawLine(const PixelFormat& format, std::uint32_t width) {
    if (!format.rowAddress) {
        return RawBytes(format, width, 1);
    }
    const std::uint8_t base[1] = {};
    return reinterpret_cast<std::uintptr_t>(format.rowAddress(base, width, 1)) -
           reinterpret_cast<std::uintptr_t>(base);
}

ImageBytes RandomRaw(std::size_t count) {
    std::mt19937 generator(static_cast<unsigned>(count));
    ImageBytes bytes(count);
    for (std::size_t at = 0; at + 4 <= count; at += 4) {
        const auto word = static_cast<std::uint32_t>(generator());
        std::memcpy(&bytes[at], &word, 4);
    }
    return bytes;
}

// A format with a converter of the test's own.
PixelFormat FormatOf(ConvertFunction convert) {
    PixelFormat format = ConvertedFormat("YUV444_8");
    format.convert = convert;
    return format;
}

class RowsOfAnImage : public testing::TestWithParam<Stores> {};
INSTANTIATE_TEST_SUITE_P(, RowsOfAnImage, testing::Values(Stores::kOrdinary, Stores::kStreaming),
                         [](const auto& stores) {
                             return stores.param == Stores::kOrdinary ? "Ordinary" : "Streaming";
                         });

TEST_P(RowsOfAnImage, AreTheSameOnEverySplit) {
    const Stores stores = GetParam();
    for (const char* name : kConvertedFormats) {
        const PixelFormat& format = ConvertedFormat(name);
        for (const std::uint32_t width : {1u, 3u, 6u, 61u, 64u, 131u, 296u}) {
            constexpr std::uint32_t kHeight = 23;
            const ImageBytes raw = RandomRaw(RawBytes(format, width, kHeight));
            const std::size_t bytes = HostRowBytes(format, width) * kHeight;
            ImageBytes whole(bytes, 0xEE);
            // Line by line where lines may be padded.
            for (std::uint32_t row = 0; format.rowAddress && row < kHeight; ++row) {
                format.convert(format.rowAddress(raw.data(), width, row),
                               whole.data() + HostRowBytes(format, width) * row, width);
            }
            if (!format.rowAddress) {
                format.convert(raw.data(), whole.data(), std::uint64_t{width} * kHeight);
            }
            for (std::uint32_t first = 0; first < kHeight; first += kRowsOfWholeGroups) {
                for (std::uint32_t end = first + kRowsOfWholeGroups;; end += kRowsOfWholeGroups) {
                    end = std::min(end, kHeight);
                    ImageBytes parts(bytes, 0xEE);
                    ConvertRows(format, raw.data(), parts.data(), width, 0, first, stores);
                    ConvertRows(format, raw.data(), parts.data(), width, end, kHeight - end,
                                stores);
                    ConvertRows(format, raw.data(), parts.data(), width, first, end - first,
                                stores);
                    ASSERT_EQ(parts, whole) << name << " " << width << " " << first << " " << end;
                    if (end == kHeight) {
                        break;
                    }
                }
            }
        }
    }
}

TEST_P(RowsOfAnImage, AccessOnlyTheirOwnBytes) {
    for (const char* name : kConvertedFormats) {
        const PixelFormat& format = ConvertedFormat(name);
        for (const std::uint32_t width : {4u, 60u, 132u, 1028u}) {
            // Only the last lines, whose bytes end at a guard page, then only the first.
            const std::size_t rawLine = RawLine(format, width);
            const std::size_t hostLine = HostRowBytes(format, width);
            const GuardedPages raw(rawLine * 2);
            const GuardedPages host(hostLine * 10);
            std::uint8_t* const image = host.End() - hostLine * 10;
            std::memset(image, 0xEE, hostLine * 10);
            ConvertRows(format, raw.End() - rawLine * 10, image, width, 8, 2, GetParam());
            EXPECT_TRUE(std::all_of(image, image + hostLine * 8,
                                    [](std::uint8_t byte) { return byte == 0xEE; }))
                << name << " " << width;
            EXPECT_EQ(image[hostLine * 10 - 1] == 0xEE, format.components == 4) << name;
            std::memset(host.Begin(), 0xEE, hostLine * 10);
            ConvertRows(format, raw.Begin(), host.Begin(), width, 0, 1, GetParam());
            EXPECT_TRUE(std::all_of(host.Begin() + hostLine, host.Begin() + hostLine * 10,
                                    [](std::uint8_t byte) { return byte == 0xEE; }))
                << name << " " << width;
        }
    }
}

TEST(LargeImages, GoPastTheCacheWhereItCannotHoldThem) {
    const PixelFormat& format = ConvertedFormat("Mono12p");
    const std::uint64_t half = platform::LargestCacheBytes() / 2;
    EXPECT_EQ(StoresFor(format, 640, 480),
              half > 0 && half < 640 * 480 * 2 ? Stores::kStreaming : Stores::kOrdinary);
    const auto rows = static_cast<std::uint32_t>(half / 8192);
    EXPECT_EQ(StoresFor(format, 4096, rows), Stores::kOrdinary);
    EXPECT_EQ(StoresFor(format, 4096, rows + 1), half > 0 ? Stores::kStreaming : Stores::kOrdinary);
}

TEST(HelpedConversion, GivesTheSamePixelsWithAnyNumberOfHelpers) {
    ConversionHelpers helpers;
    for (const std::size_t count : {0u, 1u, 2u, 5u}) {
        helpers.Keep(count);
        EXPECT_EQ(helpers.Count(), count);
        for (const char* name : kConvertedFormats) {
            const PixelFormat& format = ConvertedFormat(name);
            for (const std::uint32_t width : {1021u, 4096u}) {
                const auto height = static_cast<std::uint32_t>(
                    ConversionHelpers::kLeastBytes / HostRowBytes(format, width) + 2);
                const ImageBytes raw = RandomRaw(RawBytes(format, width, height));
                const std::size_t bytes = HostRowBytes(format, width) * height;
                ImageBytes alone(bytes, 0xEE);
                ConvertImage(format, raw.data(), alone.data(), width, height);
                ImageBytes helped(bytes, 0xEE);
                helpers.ConvertImage(format, raw.data(), helped.data(), width, height);
                ASSERT_EQ(helped, alone) << name << " " << width << " " << count;
            }
        }
    }
}

std::atomic<unsigned> threadsInside{0};
platform::Event* twoInside = nullptr;

// The first two parts are not finished before both have been begun.
void WaitForTheOther(const void*, void* destination, std::uint64_t pixelCount) {
    std::memset(destination, 7, pixelCount * 3);
    if (++threadsInside == 2) {
        twoInside->Set();
    }
    EXPECT_TRUE(twoInside->Wait(60000));
}

TEST(HelpedConversion, IsDoneByTwoThreadsAtOnce) {
    const PixelFormat format = FormatOf(&WaitForTheOther);
    platform::Event event;
    twoInside = &event;
    threadsInside = 0;
    ConversionHelpers helpers;
    helpers.Keep(1);
    ImageBytes host(std::size_t{1024} * 400 * 3);
    helpers.ConvertImage(format, host.data(), host.data(), 1024, 400);
    EXPECT_TRUE(std::all_of(host.begin(), host.end(), [](std::uint8_t byte) { return byte == 7; }));
    twoInside = nullptr;
}

std::atomic<unsigned> partsConverted{0};

void CountParts(const void*, void*, std::uint64_t) {
    ++partsConverted;
}

TEST(HelpedConversion, IsLeftToTheCallerForSmallImagesAndWithoutHelpers) {
    const PixelFormat format = FormatOf(&CountParts);
    ImageBytes host(1);
    const auto parts = [&](ConversionHelpers& helpers, std::uint32_t width, std::uint32_t height) {
        partsConverted = 0;
        helpers.ConvertImage(format, host.data(), host.data(), width, height);
        return partsConverted.load();
    };
    ConversionHelpers helpers;
    EXPECT_EQ(parts(helpers, 4096, 3000), 1u);
    helpers.Keep(1);
    EXPECT_GT(parts(helpers, 4096, 3000), 100u);
    EXPECT_EQ(parts(helpers, 640, 480), 1u);
    constexpr auto kEnough = static_cast<std::uint32_t>(ConversionHelpers::kLeastBytes / 3 + 1);
    EXPECT_GT(parts(helpers, 1, kEnough), 1u);
    EXPECT_EQ(parts(helpers, 1, kEnough - 1), 1u);
    EXPECT_EQ(parts(helpers, kEnough, 4), 1u); // no more lines than a part has
    EXPECT_EQ(parts(helpers, kEnough, 5), 2u);
    EXPECT_EQ(parts(helpers, 0, 3000), 1u);
    helpers.Keep(0);
    EXPECT_EQ(parts(helpers, 4096, 3000), 1u);
}

platform::Event* partBegun = nullptr;
platform::Event* partMayEnd = nullptr;

void BeginAndWait(const void*, void*, std::uint64_t) {
    ++partsConverted;
    partBegun->Set();
    EXPECT_TRUE(partMayEnd->Wait(60000));
}

TEST(HelpedConversion, OfASecondImageMeanwhileIsDoneByItsCallerAlone) {
    platform::Event begun;
    platform::Event mayEnd;
    partBegun = &begun;
    partMayEnd = &mayEnd;
    partsConverted = 0;
    ConversionHelpers helpers;
    helpers.Keep(1);
    ImageBytes host(1);
    const PixelFormat slow = FormatOf(&BeginAndWait);
    std::thread first([&] { helpers.ConvertImage(slow, host.data(), host.data(), 1024, 400); });
    ASSERT_TRUE(begun.Wait(60000));
    ASSERT_TRUE(support::WaitUntil([] { return partsConverted == 2; })); // caller and helper
    const PixelFormat quick = FormatOf(&CountParts);
    helpers.ConvertImage(quick, host.data(), host.data(), 1024, 400);
    EXPECT_EQ(partsConverted, 3u);
    mayEnd.Set();
    first.join();
    EXPECT_GT(partsConverted, 5u);
}

TEST(HelpedConversion, GoesOnWhileHelpersComeAndEnd) {
    const PixelFormat& format = ConvertedFormat("Mono12p");
    constexpr std::uint32_t kWidth = 1024;
    constexpr std::uint32_t kHeight = 600;
    const ImageBytes raw = RandomRaw(RawBytes(format, kWidth, kHeight));
    ImageBytes expected(std::size_t{kWidth} * kHeight * 2);
    ConvertImage(format, raw.data(), expected.data(), kWidth, kHeight);
    ConversionHelpers helpers;
    std::atomic<unsigned> images{0};
    std::atomic<bool> ended{false};
    std::thread converting([&] {
        ImageBytes host(expected.size());
        while (!ended) {
            std::fill(host.begin(), host.end(), std::uint8_t{0});
            helpers.ConvertImage(format, raw.data(), host.data(), kWidth, kHeight);
            EXPECT_TRUE(host == expected);
            ++images;
        }
    });
    for (const std::size_t count : {1u, 2u, 0u, 3u, 1u, 0u, 2u}) {
        helpers.Keep(count);
        const unsigned before = images;
        EXPECT_TRUE(support::WaitUntil([&] { return images > before + 2; }));
    }
    ended = true;
    converting.join();
    // Destroyed while two helpers sleep.
}

} // namespace
