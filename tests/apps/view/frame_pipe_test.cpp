#include "apps/view/frame_pipe.h"

#include "apps/view/rate_meter.h"
#include "apps/view/script_lines.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr ImageLayout kSmall{4, 1, 1, 8, 8, MVCC_MONO, 0, 0};

TEST(FramePipe, MakesAPictureOfAFrame) {
    platform::Event told;
    FramePipe pipe([&told] { told.Set(); });
    EXPECT_EQ(pipe.Newest(), nullptr);
    pipe.Begin(kSmall);
    const std::vector<std::uint8_t> data = {0, 1, 128, 255};
    pipe.Push(data.data());
    ASSERT_TRUE(told.Wait(60000));
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

TEST(FramePipe, IsFreeWhileItTells) {
    FramePipe* asked = nullptr;
    platform::Event told;
    FramePipe pipe([&] {
        std::thread other([&] { EXPECT_NE(asked->Newest(), nullptr); });
        other.join();
        told.Set();
    });
    asked = &pipe;
    pipe.Begin(kSmall);
    const std::uint8_t data[4] = {};
    pipe.Push(data);
    EXPECT_TRUE(told.Wait(60000));
}

TEST(FramePipe, CountsAnewFromEachBeginning) {
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

TEST(RateMeter, CountsIntervalsOfTheLastSecond) {
    constexpr std::uint64_t kMs = 1000000;
    RateMeter meter;
    EXPECT_DOUBLE_EQ(meter.Rate(5000 * kMs), 0);
    for (std::uint64_t i = 0; i <= 100; ++i) {
        meter.Add(5000 * kMs + i * 40 * kMs);
    }
    EXPECT_DOUBLE_EQ(meter.Rate(9000 * kMs), 25);
    EXPECT_DOUBLE_EQ(meter.Rate(9900 * kMs), 25);
    EXPECT_DOUBLE_EQ(meter.Rate(9990 * kMs), 0) << "one alone has no rate";
}

TEST(RateMeter, HasNoRateForOneMoment) {
    RateMeter meter;
    meter.Add(7);
    meter.Add(7);
    EXPECT_DOUBLE_EQ(meter.Rate(8), 0);
}

TEST(ScriptLines, LeaveOutCommentsAndBlanks) {
    EXPECT_EQ(ScriptLines("# all\r\n\r\n  unplug A \r\nplug A\n\t# x\nclear"),
              (std::vector<std::string>{"unplug A", "plug A", "clear"}));
    EXPECT_TRUE(ScriptLines(" \n").empty());
}

} // namespace
