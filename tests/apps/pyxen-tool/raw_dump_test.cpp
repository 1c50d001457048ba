// raw_dump_test.cpp - tests of files with images as the camera delivers them
#include "apps/pyxen-tool/raw_dump.h"

#include "apps/common/command_failure.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace pyxen;

namespace {

std::string RandomBytes(std::size_t count) {
    std::mt19937 random(7);
    std::string bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random());
    }
    return bytes;
}

const PixelFormat& Named(const char* name) {
    const PixelFormat* const format = FindPixelFormatByName(name);
    EXPECT_NE(format, nullptr) << name;
    return *format;
}

std::vector<std::uint16_t> Samples(const std::vector<std::uint8_t>& host) {
    std::vector<std::uint16_t> samples(host.size() / 2);
    std::memcpy(samples.data(), host.data(), samples.size() * 2);
    return samples;
}

TEST(RawDump, KnowsTheLengthOfAnImageOfEveryKind) {
    const struct {
        const char* name;
        std::uint64_t size; // of 5 x 3 pixels
    } cases[] = {
        {"Mono8", 15},      {"Mono10", 30},       {"Mono10p", 21},    {"Mono10Packed", 23},
        {"Mono12p", 24},    {"Mono12Packed", 23}, {"Mono14", 30},     {"Mono16", 30},
        {"BayerRG8", 15},   {"BayerRG10p", 21},   {"BayerGB12p", 24}, {"BayerBG10Packed", 23},
        {"Rgb8Packed", 45}, {"Argb8Packed", 60},  {"RGBa8", 60},      {"RGB10", 90},
        {"RGBa10", 120},    {"RGB10p", 57},       {"RGBa10p", 75},    {"RGB12p", 68},
        {"RGBa12p", 90},    {"BGR14", 90},        {"YUV444", 45},     {"YUV422", 30},
        {"YUV411", 23}};
    for (const auto& testCase : cases) {
        EXPECT_EQ(RawImageSize(Named(testCase.name), 5, 3), testCase.size) << testCase.name;
    }
}

TEST(RawDump, ConvertsImagesOfEveryFormatAndSize) {
    for (const PixelFormat& format : PixelFormatTable()) {
        for (const std::uint32_t width : {1u, 2u, 3u, 4u, 5u, 16u, 33u}) {
            for (const std::uint32_t height : {1u, 2u, 3u}) {
                const std::string raw =
                    RandomBytes(static_cast<std::size_t>(RawImageSize(format, width, height)));
                const auto host = ConvertDump(format, width, height, raw);
                EXPECT_EQ(host.size(), HostLayout(format, width, height).Size()) << format.name;
                if (!format.convert) {
                    EXPECT_EQ(std::memcmp(host.data(), raw.data(), raw.size()), 0) << format.name;
                }
            }
        }
    }
}

TEST(RawDump, RefusesEveryOtherLength) {
    for (const PixelFormat& format : PixelFormatTable()) {
        const auto size = static_cast<std::size_t>(RawImageSize(format, 5, 3));
        EXPECT_THROW(ConvertDump(format, 5, 3, RandomBytes(size - 1)), CommandFailure)
            << format.name;
        EXPECT_THROW(ConvertDump(format, 5, 3, RandomBytes(size + 1)), CommandFailure)
            << format.name;
        EXPECT_THROW(ConvertDump(format, 5, 3, ""), CommandFailure) << format.name;
    }
}

TEST(RawDump, BeginsEveryLineOf10pAndOf12pAtAWholeByte) {
    // Three pixels of 10 bits take 30 bits: two bits of the fourth byte are padding.
    const std::string tenBits("\x01\x08\x30\xC0\xFF\xFF\xFF\xFF", 8);
    EXPECT_EQ(Samples(ConvertDump(Named("Mono10p"), 3, 2, tenBits)),
              (std::vector<std::uint16_t>{1, 2, 3, 0x3FF, 0x3FF, 0x3FF}));
    // One pixel of 12 bits takes one and a half bytes.
    const std::string twelveBits("\x34\xF2\xBC\x0A", 4);
    EXPECT_EQ(Samples(ConvertDump(Named("BayerRG12p"), 1, 2, twelveBits)),
              (std::vector<std::uint16_t>{0x234, 0xABC}));
}

TEST(RawDump, KeepsTheFormatsLayout) {
    EXPECT_EQ(HostLayout(Named("BayerGB12p"), 7, 9),
              (ImageLayout{7, 9, 1, 16, 12, MVCC_RAW_CFA, 1, 1}));
    EXPECT_EQ(HostLayout(Named("YUV411"), 4, 2), (ImageLayout{4, 2, 3, 8, 8, MVCC_RGB, 0, 0}));
    EXPECT_EQ(HostLayout(Named("BGRa10"), 4, 2), (ImageLayout{4, 2, 4, 16, 10, MVCC_BGRA, 0, 0}));
}

TEST(RawDump, NamesBothLengthsWhenItRefuses) {
    try {
        ConvertDump(Named("Mono8"), 4, 4, "abc");
        FAIL() << "no exception";
    } catch (const CommandFailure& failure) {
        EXPECT_STREQ(failure.what(), "a Mono8 image of 4 x 4 pixels has 16 bytes, this dump has 3");
    }
}

} // namespace
