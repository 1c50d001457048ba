// acquisition_state_test.cpp - the one state of an acquisition
#include "acquisition/acquisition_state.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace pyxen;

namespace {

TEST(AcquisitionStateTest, StartsOnlyFromNumberZero) {
    AcquisitionState state;
    EXPECT_EQ(state.Number(), kIdle);
    EXPECT_TRUE(state.Start(kContinuous));
    EXPECT_EQ(state.Number(), kContinuous);
    EXPECT_FALSE(state.Start(kAsynchronousSingle));
    state.Started();
    EXPECT_FALSE(state.Start(kAsynchronousSingle));
    state.Finish();
    EXPECT_EQ(state.Number(), kIdle);
    EXPECT_TRUE(state.Start(kAsynchronousSingle));
}

TEST(AcquisitionStateTest, HoldsTheHostsNumberWhateverItIs) {
    AcquisitionState state;
    for (const std::uint32_t number : {5u, 6u, 0xFFFFFFFFu, 0u}) {
        state.SetNumber(number);
        EXPECT_EQ(state.Number(), number);
    }
    state.SetNumber(0xFFFFFFFFu);
    EXPECT_FALSE(state.IsWindingUp());
    state.Finish();
    EXPECT_EQ(state.Number(), kIdle);
}

TEST(AcquisitionStateTest, IsWoundUpOnce) {
    AcquisitionState state;
    ASSERT_TRUE(state.Start(kAsynchronousSingle));
    const AcquisitionState::Moment duringStart = state.Now();
    state.Started();
    const AcquisitionState::Moment running = state.Now();
    EXPECT_TRUE(state.WindUp(duringStart));
    EXPECT_TRUE(state.IsWindingUp());
    EXPECT_EQ(state.Number(), kAsynchronousSingle);
    EXPECT_FALSE(state.WindUp(running));
    EXPECT_FALSE(state.WindUp(state.Now()));
    state.Finish();
    EXPECT_FALSE(state.WindUp(running));
    ASSERT_TRUE(state.Start(kAsynchronousSingle));
    EXPECT_FALSE(state.WindUp(running)) << "a callback of the snap before";
    EXPECT_TRUE(state.WindUp(state.Now()));
}

TEST(AcquisitionStateTest, IsWoundUpAlsoForANumberThatTheHostSet) {
    AcquisitionState state;
    state.SetNumber(kAsynchronousSingle);
    EXPECT_TRUE(state.WindUp(state.Now()));
}

TEST(AcquisitionStateTest, IsRunningAgainWithoutAThreadToWindItUp) {
    AcquisitionState state;
    ASSERT_TRUE(state.Start(kAsynchronousSingle));
    ASSERT_TRUE(state.WindUp(state.Now()));
    state.Started(); // the start returns after the frame has come
    EXPECT_TRUE(state.IsWindingUp());
    state.WindUpFailed();
    EXPECT_FALSE(state.IsWindingUp());
    EXPECT_TRUE(state.WindUp(state.Now()));
}

TEST(AcquisitionStateTest, IsNotWoundUpWhileItIsStopped) {
    AcquisitionState state;
    ASSERT_TRUE(state.Start(kAsynchronousSingle));
    const AcquisitionState::Moment seen = state.Now();
    state.BeginStop();
    EXPECT_EQ(state.Number(), kAsynchronousSingle);
    EXPECT_FALSE(state.WindUp(seen));
    EXPECT_FALSE(state.WindUp(state.Now()));
}

TEST(AcquisitionStateTest, LetsOneOfManyThreadsWindUp) {
    for (int round = 0; round < 50; ++round) {
        AcquisitionState state;
        ASSERT_TRUE(state.Start(kAsynchronousSingle));
        const AcquisitionState::Moment seen = state.Now();
        std::atomic<int> winners{0};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] { winners += state.WindUp(seen) ? 1 : 0; });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_EQ(winners, 1);
    }
}

} // namespace
