// image_memory_test.cpp - the memory of an image
#include "imaging/image_memory.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using pyxen::ImageMemory;

bool IsAligned(const std::uint8_t* image) {
    return reinterpret_cast<std::uintptr_t>(image) % ImageMemory::kAlignment == 0;
}

TEST(ImageMemoryTest, BeginsAtACacheLineForEverySize) {
    for (std::uint64_t size = 1; size < 20000; size += 37) {
        ImageMemory memory;
        ASSERT_TRUE(memory.Resize(size));
        EXPECT_TRUE(IsAligned(memory.Get())) << size;
        EXPECT_EQ(memory.Size(), size);
        memory.Get()[0] = 1;
        memory.Get()[size - 1] = 2; // AddressSanitizer watches
        ASSERT_TRUE(memory.Resize(2 * size));
        EXPECT_TRUE(IsAligned(memory.Get())) << size;
        memory.Get()[2 * size - 1] = 3;
    }
}

TEST(ImageMemoryTest, KeepsAnImageOfTheSameSize) {
    ImageMemory memory;
    ASSERT_TRUE(memory.Resize(5000));
    std::uint8_t* const image = memory.Get();
    image[0] = 11;
    image[4096] = 12;
    ASSERT_TRUE(memory.Resize(5000));
    EXPECT_EQ(memory.Get(), image);
    EXPECT_EQ(image[0], 11);
    EXPECT_EQ(image[4096], 12);
}

TEST(ImageMemoryTest, HasNoImageOfSizeZero) {
    ImageMemory memory;
    EXPECT_EQ(memory.Get(), nullptr);
    ASSERT_TRUE(memory.Resize(100));
    EXPECT_TRUE(memory.Resize(0));
    EXPECT_EQ(memory.Get(), nullptr);
    EXPECT_EQ(memory.Size(), 0u);
    EXPECT_TRUE(memory.Resize(100));
    EXPECT_NE(memory.Get(), nullptr);
}

TEST(ImageMemoryTest, KeepsWhatItHasWhenOutOfMemory) {
    ImageMemory memory;
    ASSERT_TRUE(memory.Resize(100));
    std::uint8_t* const image = memory.Get();
    for (const std::uint64_t tooMuch :
         {std::numeric_limits<std::uint64_t>::max(), std::numeric_limits<std::uint64_t>::max() - 62,
          std::numeric_limits<std::uint64_t>::max() / 2}) {
        EXPECT_FALSE(memory.Resize(tooMuch));
        EXPECT_EQ(memory.Get(), image);
        EXPECT_EQ(memory.Size(), 100u);
    }
}

} // namespace
