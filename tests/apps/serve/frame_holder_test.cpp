// frame_holder_test.cpp - the newest frame and who waits for it
#include "apps/serve/frame_holder.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr std::uint64_t kHolderSecond = 1000000000;

ImageLayout HeldLayout() {
    ImageLayout layout;
    layout.width = 2;
    layout.height = 1;
    layout.components = 1;
    layout.allocatedBits = 8;
    layout.bits = 8;
    return layout;
}

void PublishByte(FrameHolder& holder, std::uint8_t byte, std::uint64_t now = 0) {
    holder.Publish(HeldLayout(), {byte, byte}, now);
}

TEST(FrameHolder, HasTheNewestFrame) {
    FrameHolder holder;
    EXPECT_FALSE(holder.Newest());
    PublishByte(holder, 1);
    PublishByte(holder, 2);
    const FramePointer newest = holder.Newest();
    ASSERT_TRUE(newest);
    EXPECT_EQ(newest->number, 2u);
    EXPECT_EQ(newest->bytes.at(0), 2);
    holder.Clear();
    EXPECT_FALSE(holder.Newest());
    PublishByte(holder, 3);
    EXPECT_EQ(holder.Newest()->number, 3u) << "numbers go on";
    EXPECT_EQ(newest->bytes.at(0), 2) << "what is read stays";
}

TEST(FrameHolder, WaitsForANewerFrame) {
    FrameHolder holder;
    EXPECT_FALSE(holder.WaitNewer(0, 1));
    PublishByte(holder, 1);
    EXPECT_EQ(holder.WaitNewer(0, 1)->number, 1u);
    EXPECT_FALSE(holder.WaitNewer(1, 1));
    std::thread publisher([&] { PublishByte(holder, 2); });
    const FramePointer frame = holder.WaitNewer(1, 60000);
    publisher.join();
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->number, 2u);
}

TEST(FrameHolder, WantsFramesWhileSomebodyLooks) {
    FrameHolder holder;
    const std::uint64_t now = platform::MonotonicNanoseconds();
    EXPECT_TRUE(holder.IsWanted(now)) << "there is none yet";
    PublishByte(holder, 1, now);
    EXPECT_FALSE(holder.IsWanted(now + kHolderSecond / 100));
    EXPECT_TRUE(holder.IsWanted(now + kHolderSecond / 2)) << "for who looks next";
    holder.Newest();
    PublishByte(holder, 2, now);
    EXPECT_TRUE(holder.IsWanted(now + kHolderSecond / 100));
}

TEST(FrameHolder, UsesTheMemoryOfFramesAgain) {
    FrameHolder holder;
    EXPECT_TRUE(holder.TakeBuffer().empty());
    PublishByte(holder, 1);
    const std::uint8_t* const memory = holder.Newest()->bytes.data();
    PublishByte(holder, 2);
    EXPECT_EQ(holder.TakeBuffer().data(), memory);
    EXPECT_TRUE(holder.TakeBuffer().empty());
}

TEST(FrameHolder, MayBeOutlivedByItsFrames) {
    FramePointer frame;
    {
        FrameHolder holder;
        PublishByte(holder, 7);
        frame = holder.Newest();
    }
    EXPECT_EQ(frame->bytes.at(1), 7);
}

} // namespace
