// sample_copy_test.cpp - tests of bringing samples into the order of a file
#include "apps/common/sample_copy.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using SampleBytes = std::vector<std::uint8_t>;

SampleBytes Copied(const ImageLayout& layout, const void* image, const SampleOrder& order) {
    SampleBytes bytes{1, 2, 3}; // what was there before
    CopySamples(layout, image, order, bytes);
    return bytes;
}

TEST(SampleCopy, MovesSamplesUpAndSwapsTheirBytes) {
    const ImageLayout layout{3, 1, 1, 16, 12, MVCC_MONO, 0, 0};
    const std::uint16_t image[] = {0x0ABC, 0x0FFF, 0xF001}; // the last with foreign bits
    SampleOrder order = FileOrder(layout);
    order.shift = 4;
    order.isBigEndian = true;
    EXPECT_EQ(Copied(layout, image, order), (SampleBytes{0xAB, 0xC0, 0xFF, 0xF0, 0x00, 0x10}));
    order.shift = 0;
    order.isBigEndian = false;
    EXPECT_EQ(Copied(layout, image, order), (SampleBytes{0xBC, 0x0A, 0xFF, 0x0F, 0x01, 0x00}));
}

TEST(SampleCopy, PutsComponentsInOrder) {
    const SampleBytes image{9, 1, 2, 3, 8, 4, 5, 6};
    const ImageLayout layout{2, 1, 4, 8, 8, MVCC_ARGB, 0, 0};
    SampleOrder order = FileOrder(layout);
    EXPECT_EQ(Copied(layout, image.data(), order), (SampleBytes{1, 2, 3, 9, 4, 5, 6, 8}));
    order.channels = 3;
    EXPECT_EQ(Copied(layout, image.data(), order), (SampleBytes{1, 2, 3, 4, 5, 6}));
}

TEST(SampleCopy, TakesOneByteOfTwoWhenNoMoreAreSignificant) {
    const ImageLayout layout{2, 1, 1, 16, 8, MVCC_MONO, 0, 0};
    const std::uint16_t image[] = {0x0012, 0xAB34};
    EXPECT_EQ(Copied(layout, image, FileOrder(layout)), (SampleBytes{0x12, 0x34}));
}

TEST(SampleCopy, RestoresWhatWasCopied) {
    const ImageLayout wide{2, 1, 4, 16, 12, MVCC_ARGB, 0, 0};
    const std::uint16_t image[] = {0x0ABC, 0x0FFF, 1, 2, 3, 4, 5, 6};
    SampleOrder order = FileOrder(wide);
    order.shift = 4;
    order.isBigEndian = true;
    EXPECT_EQ(FileSampleBytes(wide), 2u);
    const SampleBytes file = Copied(wide, image, order);
    std::uint16_t restored[8] = {};
    RestoreSamples(wide, file.data(), order, restored);
    EXPECT_EQ(std::memcmp(restored, image, sizeof image), 0);

    // Alpha is not in a file of three channels.
    order.channels = 3;
    const SampleBytes opaque = Copied(wide, image, order);
    RestoreSamples(wide, opaque.data(), order, restored);
    EXPECT_EQ(restored[0], 0x0FFF);
    EXPECT_EQ(restored[1], 0x0FFF);
    EXPECT_EQ(restored[4], 0x0FFF);
    EXPECT_EQ(restored[7], 6);

    const ImageLayout narrow{2, 1, 1, 16, 8, MVCC_MONO, 0, 0};
    EXPECT_EQ(FileSampleBytes(narrow), 1u);
    std::uint16_t samples[2] = {};
    RestoreSamples(narrow, SampleBytes{0x12, 0x34}.data(), FileOrder(narrow), samples);
    EXPECT_EQ(samples[0], 0x12);
    EXPECT_EQ(samples[1], 0x34);
}

TEST(SampleCopy, IsNotNeededForWhatIsInOrder) {
    const std::uint16_t image[] = {0x0FFF, 0x0001, 0x0002, 0x0003};
    const auto isInOrder = [&image](const ImageLayout& layout, std::uint32_t shift, bool swapped) {
        SampleOrder order = FileOrder(layout);
        order.shift = shift;
        order.isBigEndian = swapped;
        return IsInOrder(layout, image, order);
    };
    EXPECT_TRUE(isInOrder({4, 2, 1, 8, 8, MVCC_MONO, 0, 0}, 0, false));
    EXPECT_TRUE(isInOrder({4, 2, 1, 8, 8, MVCC_MONO, 0, 0}, 0, true));
    EXPECT_TRUE(isInOrder({1, 2, 4, 8, 8, MVCC_RGBA, 0, 0}, 0, true));
    EXPECT_TRUE(isInOrder({4, 1, 1, 16, 12, MVCC_MONO, 0, 0}, 0, false));
    EXPECT_TRUE(isInOrder({4, 1, 1, 16, 16, MVCC_RAW_CFA, 0, 0}, 0, false));
    EXPECT_FALSE(isInOrder({4, 1, 1, 16, 12, MVCC_MONO, 0, 0}, 0, true));
    EXPECT_FALSE(isInOrder({4, 1, 1, 16, 12, MVCC_MONO, 0, 0}, 4, false));
    EXPECT_FALSE(isInOrder({4, 1, 1, 16, 8, MVCC_MONO, 0, 0}, 0, false));
    EXPECT_FALSE(isInOrder({2, 1, 3, 8, 8, MVCC_BGR, 0, 0}, 0, false));
    // Bits that are not significant are set.
    EXPECT_FALSE(isInOrder({4, 1, 1, 16, 11, MVCC_MONO, 0, 0}, 0, false));
    EXPECT_FALSE(isInOrder({4, 2, 1, 8, 4, MVCC_MONO, 0, 0}, 0, false));
}

TEST(SampleCopy, DoesNotTakeComponentsThatAreNotThere) {
    EXPECT_EQ(FileOrder({1, 1, 1, 8, 8, MVCC_BGR, 0, 0}).component[0], 0u);
    EXPECT_EQ(FileOrder({1, 1, 3, 8, 8, MVCC_ARGB, 0, 0}).component[2], 0u);
}

} // namespace
