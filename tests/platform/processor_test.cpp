// processor_test.cpp - instruction sets and caches of the processor
#include "platform/processor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>

namespace {

TEST(Processor, HasOlderInstructionsWithNewerOnes) {
    EXPECT_LE(platform::HasAvx2(), platform::HasSse41());
    EXPECT_LE(platform::HasAvx512Vbmi(), platform::HasAvx2());
}

TEST(Processor, StatesItsLargestCacheOrNothing) {
    const std::uint64_t bytes = platform::LargestCacheBytes();
    EXPECT_EQ(platform::LargestCacheBytes(), bytes);
    if (bytes > 0) {
        EXPECT_GE(bytes, std::uint64_t{32} << 10);
        EXPECT_LE(bytes, std::uint64_t{64} << 30);
        EXPECT_EQ(bytes % 64, 0u);
    }
    // What Linux has read in the same place, where it says.
    for (int index = 0; index < 8; ++index) {
        std::ifstream file("/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) +
                           "/size");
        std::uint64_t kilobytes = 0;
        if (file >> kilobytes) {
            EXPECT_LE(kilobytes << 10, bytes);
        }
    }
}

} // namespace
