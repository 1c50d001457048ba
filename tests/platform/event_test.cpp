// event_test.cpp - manual-reset events
#include "platform/event.h"

#include "platform/clock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace platform {
namespace {

constexpr std::uint64_t kNsPerMs = 1'000'000;

TEST(Event, StartsUnsignalled) {
    const Event event;
    EXPECT_TRUE(event.IsValid());
    EXPECT_FALSE(event.IsSet());
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, StaysSetUntilItIsReset) {
    Event event;
    event.Set();
    EXPECT_TRUE(event.IsSet());
    EXPECT_TRUE(event.Wait(0));
    EXPECT_TRUE(event.Wait(kInfinite));
    EXPECT_TRUE(event.IsSet());
    event.Reset();
    EXPECT_FALSE(event.IsSet());
    EXPECT_FALSE(event.Wait(0));
}

TEST(Event, SettingOrResettingTwiceHasNoFurtherEffect) {
    Event event;
    event.Set();
    event.Set();
    event.Reset();
    EXPECT_FALSE(event.IsSet());
    event.Reset();
    event.Set();
    EXPECT_TRUE(event.IsSet());
}

TEST(Event, TimesOutAfterTheGivenTime) {
    const Event event;
    const std::uint64_t start = MonotonicNanoseconds();
    EXPECT_FALSE(event.Wait(50));
    // Windows counts timer ticks of up to 16 ms, and the first one is already under way.
    EXPECT_GE(MonotonicNanoseconds() - start, 30 * kNsPerMs);
}

TEST(Event, WakesEveryWaiterAtOnce) {
    Event event;
    std::atomic<int> woken{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 8; ++i) {
        const std::uint32_t limit = i % 2 == 0 ? kInfinite : 60000;
        waiters.emplace_back([&, limit] { woken += event.Wait(limit) ? 1 : 0; });
    }
    event.Set();
    for (std::thread& waiter : waiters) {
        waiter.join();
    }
    EXPECT_EQ(woken, 8);
}

TEST(Event, MakesEarlierWritesVisibleToTheWaiter) {
    Event asked;
    Event answered;
    int value = 0;
    std::thread other([&] {
        asked.Wait(kInfinite);
        value *= 2;
        answered.Set();
    });
    value = 21;
    asked.Set();
    EXPECT_TRUE(answered.Wait(60000));
    EXPECT_EQ(value, 42);
    other.join();
}

} // namespace
} // namespace platform
