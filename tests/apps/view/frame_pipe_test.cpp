// frame_pipe_test.cpp - tests of passing frames to the screen
#include "apps/view/frame_pipe.h"

#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr ImageLayout kSmall{4, 1, 1, 8, 8, MVCC_MONO, 0, 0};

TEST(FramePipe, MakesAPictureOfAFrame) {
    platform::Event called;
    FramePipe pipe([&called] { called.Set(); });
    EXPECT_EQ(pipe.Newest(), nullptr);
    pipe.Begin(kSmall);
    const std::vector<std::uint8_t> data = {0, 1, 128, 255};
    pipe.Push(data.data());
    ASSERT_TRUE(called.Wait(60000));
    const auto shown = pipe.Newest();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->frame->bytes, data);
    EXPECT_EQ(shown->frame->layout, kSmall);
    EXPECT_EQ(shown->image.pixels, (std::vector<std::uint32_t>{0, 0x010101, 0x808080, 0xFFFFFF}));
    ASSERT_EQ(shown->histogram.size(), 1u);
    EXPECT_EQ(shown->histogram[0].max, 255u);
    EXPECT_EQ(pipe.Frames(), 1u);
}

TEST(FramePipe, ShowsTheNewestOfManyFrames) {
    FramePipe pipe([] {});
    pipe.Begin(kSmall);
    constexpr int kFrames = 2000;
    std::thread camera([&pipe] {
        for (int i = 1; i <= kFrames; ++i) {
            const auto value = static_cast<std::uint8_t>(i % 251);
            const std::uint8_t data[] = {value, value, value, value};
            pipe.Push(data);
        }
    });
    camera.join();
    EXPECT_TRUE(support::WaitUntil(
        [&] {
            const auto shown = pipe.Newest();
            return shown && shown->frame->bytes[0] == kFrames % 251;
        },
        60000));
    EXPECT_EQ(pipe.Frames(), static_cast<std::uint64_t>(kFrames));
}

TEST(FramePipe, HoldsNoLockDuringTheCallback) {
    FramePipe* current = nullptr;
    platform::Event called;
    FramePipe pipe([&] {
        std::thread other([&] { EXPECT_NE(current->Newest(), nullptr); });
        other.join();
        called.Set();
    });
    current = &pipe;
    pipe.Begin(kSmall);
    const std::uint8_t data[4] = {};
    pipe.Push(data);
    EXPECT_TRUE(called.Wait(60000));
}

TEST(FramePipe, RestartsTheCountsAtEachBegin) {
    FramePipe pipe([] {});
    pipe.Begin(kSmall);
    const std::uint8_t data[8] = {};
    pipe.Push(data);
    pipe.Begin({2, 2, 1, 16, 12, MVCC_MONO, 0, 0});
    EXPECT_EQ(pipe.Frames(), 0u);
    EXPECT_DOUBLE_EQ(pipe.Rate(), 0);
    pipe.Push(data);
    EXPECT_TRUE(support::WaitUntil(
        [&] {
            const auto shown = pipe.Newest();
            return shown && shown->image.height == 2;
        },
        60000));
}

} // namespace
